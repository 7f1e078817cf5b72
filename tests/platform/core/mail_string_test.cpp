// The display name and the address of pasted mail strings.
#include "platform/core/mail_string.h"

#include <gtest/gtest.h>

#include <string>

namespace zelvo::testing {
namespace {

using ValueConv::MailAddressPart;
using ValueConv::MailNamePart;

struct MailCase {
    const char* label;
    std::string mail;
    std::string name;
    std::string address;
};

void PrintTo(const MailCase& c, std::ostream* os) { *os << c.label; }

class MailStringTest : public ::testing::TestWithParam<MailCase> {};

TEST_P(MailStringTest, GivesTheNameAndTheAddress) {
    const MailCase& c = GetParam();
    EXPECT_EQ(MailNamePart(c.mail), c.name) << c.mail;
    EXPECT_EQ(MailAddressPart(c.mail), c.address) << c.mail;
}

const MailCase kForms[] = {
    {"NameAndBracketedAddress", "Ivan Petrov <ivan@example.org>", "Ivan Petrov", "ivan@example.org"},
    {"QuotedNameWithComma", "\"Petrov, Ivan\" <ivan@example.org>", "Petrov, Ivan", "ivan@example.org"},
    {"QuotedCyrillicName", "\"Иванов, Иван\" <ivan@example.org>", "Иванов, Иван", "ivan@example.org"},
    {"EscapesInsideQuotes", R"("Ivan \"Vanya\" P\\etrov" <i@x.org>)", "Ivan \"Vanya\" P\\etrov", "i@x.org"},
    {"UnquotedCommaBeforeTheAddress", "Иванов, Иван <ivan@example.org>", "Иванов, Иван", "ivan@example.org"},
    {"CyrillicNameNoQuotes", "Пётр Сидоров <petr@example.ru>", "Пётр Сидоров", "petr@example.ru"},
    {"BareAddress", "ivan@example.org", "", "ivan@example.org"},
    {"BareAddressInBlanks", "  ivan@example.org \t", "", "ivan@example.org"},
    {"BracketsAlone", "<ivan@example.org>", "", "ivan@example.org"},
    {"NoBlankBeforeBracket", "Ivan<ivan@example.org>", "Ivan", "ivan@example.org"},
    {"BlanksInsideBrackets", "Ivan < ivan @ example.org >", "Ivan", "ivan@example.org"},
    {"MailtoLink", "mailto:ivan@example.org", "", "ivan@example.org"},
    {"CommentAsName", "ivan@example.org (Ivan Petrov)", "Ivan Petrov", "ivan@example.org"},
    {"CommentBesideAName", "Ivan (work) Petrov <ivan@example.org>", "Ivan Petrov", "ivan@example.org"},
    {"NestedComment", "ivan@example.org (Ivan (Vanya) Petrov)", "Ivan (Vanya) Petrov", "ivan@example.org"},
    {"CommentInsideBrackets", "Ivan <ivan@example.org (home)>", "Ivan", "ivan@example.org"},
    {"NameBeforeBareAddress", "Ivan ivan@example.org", "Ivan", "ivan@example.org"},
    {"RunsOfBlanksInName", "  Ivan    Petrov   <i@x.org>", "Ivan Petrov", "i@x.org"},
};
INSTANTIATE_TEST_SUITE_P(Forms, MailStringTest, ::testing::ValuesIn(kForms),
                         [](const auto& info) { return std::string(info.param.label); });

const MailCase kEncodedWords[] = {
    {"Utf8Base64", "=?UTF-8?B?0JjQstCw0L0=?= <ivan@example.org>", "Иван", "ivan@example.org"},
    {"Utf8QLowerCase", "=?utf-8?q?=D0=9F=D1=91=D1=82=D1=80_Ivanov?= <p@x.ru>", "Пётр Ivanov", "p@x.ru"},
    {"Windows1251Q", "=?windows-1251?Q?=C8=E2=E0=ED?= <ivan@example.org>", "Иван", "ivan@example.org"},
    {"Koi8rBase64", "=?KOI8-R?B?8MXU0s/X?= <petrov@example.ru>", "Петров", "petrov@example.ru"},
    {"AdjacentWordsJoin", "=?UTF-8?B?0JjQstCw0L0=?= =?KOI8-R?B?8MXU0s/X?= <i@x.ru>", "ИванПетров", "i@x.ru"},
    {"WordAndPlainText", "=?UTF-8?B?0JjQstCw0L0=?= Petrov <i@x.ru>", "Иван Petrov", "i@x.ru"},
    {"EncodedInsideQuotes", "\"=?UTF-8?B?0JjQstCw0L3QvtCyLCDQmNCy0LDQvQ==?=\" <i@x.ru>", "Иванов, Иван", "i@x.ru"},
    {"LanguageAfterCharset", "=?UTF-8*ru?B?0JjQstCw0L0=?= <i@x.ru>", "Иван", "i@x.ru"},
    {"UnknownCharsetKept", "=?x-no-such?Q?abc?= <i@x.ru>", "=?x-no-such?Q?abc?=", "i@x.ru"},
    {"MalformedWordKept", "=?UTF-8?X?abc?= <i@x.ru>", "=?UTF-8?X?abc?=", "i@x.ru"},
    {"ControlsInsideAWordDropped", "=?UTF-8?Q?Iv=0D=0Aan=07_P?= <i@x.ru>", "Iv an P", "i@x.ru"},
    {"BadBase64Kept", "=?UTF-8?B?!!!?= <i@x.ru>", "=?UTF-8?B?!!!?=", "i@x.ru"},
};
INSTANTIATE_TEST_SUITE_P(EncodedWords, MailStringTest, ::testing::ValuesIn(kEncodedWords),
                         [](const auto& info) { return std::string(info.param.label); });

const MailCase kBadInput[] = {
    {"Empty", "", "", ""},
    {"BlanksOnly", "   \t ", "", ""},
    {"NoAtIsANameOnly", "Ivan Petrov", "Ivan Petrov", ""},
    {"BracketsWithoutAt", "Ivan <ivan>", "Ivan", ""},
    {"BracketsWithoutAtAlone", "<ivan>", "ivan", ""},
    {"EmptyBrackets", "<>", "", ""},
    {"PunctuationOnly", ",;,", "", ""},
    {"TwoAddressesTakesTheFirst", "a@x.org, b@x.org", "", "a@x.org"},
    {"TwoMailboxesTakesTheFirst", "Ann <a@x.org>; Bob <b@x.org>", "Ann", "a@x.org"},
    {"CommaInsideBracketsIsNoSplit", "\"A, B\" <a@x.org>, \"C, D\" <c@x.org>", "A, B", "a@x.org"},
    {"UnterminatedQuote", "\"Ivan Petrov <ivan@example.org>", "Ivan Petrov", "ivan@example.org"},
    {"UnterminatedQuoteAfterName", "Ivan \"Petrov <ivan@example.org>", "Ivan Petrov", "ivan@example.org"},
    {"UnterminatedBracket", "Ivan <ivan@example.org", "Ivan", "ivan@example.org"},
    {"StrayClosingBracket", "Ivan> ivan@example.org", "Ivan", "ivan@example.org"},
    {"BracketInsideBrackets", "Ivan <iv<an@example.org>", "Ivan", "ivan@example.org"},
    {"UnterminatedComment", "ivan@example.org (Ivan", "Ivan", "ivan@example.org"},
    {"LineBreaksAreBlanks", "Ivan\r\n Petrov\t<ivan@example.org>", "Ivan Petrov", "ivan@example.org"},
    {"ControlsDropped", std::string("Iv\x01" "an\x7f <iv\x1b" "an@example.org>"), "Ivan", "ivan@example.org"},
    {"NulDropped", std::string("Ivan\0 <ivan@x.org>", 18), "Ivan", "ivan@x.org"},
    {"C1ControlDropped", "Iv\xC2\x85" "an <ivan@x.org>", "Ivan", "ivan@x.org"},
};
INSTANTIATE_TEST_SUITE_P(BadInput, MailStringTest, ::testing::ValuesIn(kBadInput),
                         [](const auto& info) { return std::string(info.param.label); });

TEST(MailStringLongTest, AVeryLongTextIsReadWholeAndNotCut) {
    // Nothing is cut here: the caller knows its columns.
    std::string name(5000, 'a');
    EXPECT_EQ(MailNamePart(name + " <i@x.org>"), name);
    EXPECT_EQ(MailAddressPart(name + " <i@x.org>"), "i@x.org");
    std::string local(5000, 'b');
    EXPECT_EQ(MailAddressPart(local + "@x.org"), local + "@x.org");
    // Many quotes, comments and encoded-word openers in a row stay linear
    // enough to finish, and give a name without them.
    std::string noise;
    for (int i = 0; i < 1000; ++i) noise += "\"(=?";
    EXPECT_NO_THROW(MailNamePart(noise + " <i@x.org>"));
    EXPECT_EQ(MailAddressPart(noise + " <i@x.org>"), "i@x.org");
}

TEST(MailStringLongTest, AnyMixOfTheSyntaxGivesAnAddressWithAnAtAndANameWithoutControls) {
    // Strings made of the characters the grammar cares about, in any order:
    // the parts keep their promises whatever the mix.
    const std::string alphabet = "\"()<>,;@\\ =?_ab\t\r\n\x01Ж";
    std::uint32_t seed = 12345;
    auto next = [&] { return seed = seed * 1664525u + 1013904223u; };
    for (int n = 0; n < 20000; ++n) {
        std::string mail;
        for (std::uint32_t len = next() % 40; len > 0; --len) mail += alphabet[(next() >> 8) % alphabet.size()];
        std::string address = MailAddressPart(mail);
        std::string name = MailNamePart(mail);
        if (!address.empty()) {
            EXPECT_NE(address.find('@'), std::string::npos) << mail;
            EXPECT_EQ(address.find_first_of(" <>\t\r\n"), std::string::npos) << mail;
        }
        for (char c : name + address) EXPECT_FALSE(static_cast<unsigned char>(c) < 0x20) << mail;
        if (!name.empty()) EXPECT_TRUE(name.front() != ' ' && name.back() != ' ') << mail;
    }
}

}  // namespace
}  // namespace zelvo::testing
