// The reader against the quirks real writers produce, one named case each.
#include <gtest/gtest.h>

#include <string>

#include "platform/vcard/vcard_reader.h"

namespace zelvo::vcard {
namespace {

// One card's content rendered as a short line per field, for comparison.
std::string Render(const VCardContent& c) {
    std::string s = "FN=" + c.FullName + "|N=" + c.FirstName + "/" + c.MiddleName + "/" + c.SurName;
    if (!c.Title.empty()) s += "|TITLE=" + c.Title;
    for (auto& o : c.Organization.items()) s += "|ORG=" + o;
    for (auto& p : c.Phones.items()) s += "|TEL" + std::to_string(p.kind) + std::to_string(p.type) + "=" + p.number;
    for (auto& e : c.Emails.items()) s += "|EMAIL" + std::to_string(e.kind) + "=" + e.address;
    for (auto& u : c.Urls.items()) s += "|URL" + std::to_string(u.kind) + "=" + u.url;
    for (auto& a : c.Addresses.items()) {
        auto& r = a.record;
        s += "|ADR" + std::to_string(r.Kind) + "=" + r.PostOfficeBox + "/" + r.Extended + "/" + r.Street + "/" +
             r.City + "/" + r.Region + "/" + r.PostIndex + "/" + r.Country;
    }
    if (!c.Photo.Data().empty()) {
        s += "|PHOTO=" + c.Photo.ImageType() + ":" + std::to_string(c.Photo.Data().size());
    }
    return s;
}

std::string FirstCard(std::string_view text) {
    ReadResult r = ReadVCards(text, "t.vcf");
    if (r.cards.empty()) return "<no card>";
    return Render(r.cards[0].content);
}

struct Case {
    const char* name;
    std::string text;
    std::string expected;
};

class ReaderCases : public ::testing::TestWithParam<Case> {};

TEST_P(ReaderCases, ReadsTheFields) { EXPECT_EQ(FirstCard(GetParam().text), GetParam().expected); }

const std::string kJpegB64 = "/9j/4AAQSkZJRg==";  // FF D8 FF E0 00 10 4A 46 49 46: 10 bytes

INSTANTIATE_TEST_SUITE_P(
    Quirks, ReaderCases,
    ::testing::Values(
        Case{"PlainV30",
             "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Ivanov;Ivan;Ivanovich;;\r\nFN:Ivan Ivanov\r\nTITLE:Engineer\r\n"
             "ORG:Acme;Research;Lab 2\r\nEND:VCARD\r\n",
             "FN=Ivan Ivanov|N=Ivanov/Ivan/Ivanovich|TITLE=Engineer|ORG=Acme|ORG=Research|ORG=Lab 2"},
        Case{"FoldingWithBlankAndTab",
             "BEGIN:VCARD\nVERSION:3.0\nFN:Jo\n hn\n\t Smith\nEND:VCARD\n", "FN=John Smith|N=//"},
        Case{"QuotedPrintableSoftBreaksUtf8",
             "BEGIN:VCARD\r\nVERSION:2.1\r\nFN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=D0=98=D0=B2=D0=B0=\r\n"
             "=D0=BD\r\nEND:VCARD\r\n",
             "FN=Иван|N=//"},
        Case{"QuotedPrintableBareParamWindows1251",
             "BEGIN:VCARD\nVERSION:2.1\nN;CHARSET=WINDOWS-1251;QUOTED-PRINTABLE:=CF=E5=F2=F0=EE=E2;=C8=E2=E0=ED\n"
             "END:VCARD\n",
             "FN=|N=Петров/Иван/"},
        Case{"Koi8rEightBit",
             "BEGIN:VCARD\nVERSION:2.1\nFN;CHARSET=KOI8-R:\xEF\xCC\xD8\xC7\xC1\nEND:VCARD\n", "FN=Ольга|N=//"},
        Case{"ShiftJisTrailByteIsABackslash",
             // 表 is 0x95 0x5C in Shift_JIS: its second byte must not escape the ';'.
             "BEGIN:VCARD\nVERSION:2.1\nN;CHARSET=SHIFT_JIS:\x95\x5C;\x8E\x71\nEND:VCARD\n", "FN=|N=表/子/"},
        Case{"Iso88592",
             "BEGIN:VCARD\nVERSION:2.1\nFN;CHARSET=ISO-8859-2:\xA3\xF3" "d\xBC\nEND:VCARD\n", "FN=Łódź|N=//"},
        Case{"EscapesInTextAndStructuredValues",
             "BEGIN:VCARD\nVERSION:3.0\nFN:Smith\\, John\\nJr.\nN:O\\;Neil;Ann\\,Marie;;;\nEND:VCARD\n",
             "FN=Smith, John\nJr.|N=O;Neil/Ann,Marie/"},
        Case{"GroupsAndParameterForms",
             "BEGIN:VCARD\nVERSION:3.0\nFN:X\nitem1.EMAIL;type=INTERNET;type=WORK:a@b.c\n"
             "item2.TEL;TYPE=\"work,cell\":+1 555\nTEL;HOME;FAX:+2\nTEL;TYPE=WORK,VOICE:+3\n"
             "item3.URL;type=pref:http://x.y\nitem3.X-ABLabel:_$!<HomePage>!$_\nEND:VCARD\n",
             "FN=X|N=//|TEL23=+1 555|TEL12=+2|TEL21=+3|EMAIL2=a@b.c|URL1=http://x.y"},
        Case{"Version4UrisAndPref",
             "BEGIN:VCARD\nVERSION:4.0\nFN:Y\nTEL;VALUE=uri;TYPE=\"voice,work\":tel:+1-555-0100\n"
             "EMAIL;PREF=1:mailto:y@example.org\nEND:VCARD\n",
             "FN=Y|N=//|TEL21=+1-555-0100|EMAIL1=y@example.org"},
        Case{"AddressKinds",
             "BEGIN:VCARD\nVERSION:3.0\nFN:Z\nADR;TYPE=WORK,POSTAL:;Suite 5;1 Main St;Springfield;IL;62701;USA\n"
             "ADR;TYPE=HOME:;;Lenina 1;Moscow;;101000;Russia\nADR:;;Only;;;;\nEND:VCARD\n",
             "FN=Z|N=//|ADR2=/Suite 5/1 Main St/Springfield/IL/62701/USA|ADR1=//Lenina 1/Moscow//101000/Russia"
             "|ADR1=//Only////"},
        Case{"PhotoBase64V3",
             "BEGIN:VCARD\nVERSION:3.0\nFN:P\nPHOTO;ENCODING=b;TYPE=JPEG:" + kJpegB64 + "\nEND:VCARD\n",
             "FN=P|N=//|PHOTO=JPEG:10"},
        Case{"PhotoDataUri",
             "BEGIN:VCARD\nVERSION:4.0\nFN:P\nPHOTO:data:image/jpeg;base64," + kJpegB64 + "\nEND:VCARD\n",
             "FN=P|N=//|PHOTO=JPEG:10"},
        Case{"PhotoOutlookIndentedBase64EndedByBlankLine",
             "BEGIN:VCARD\r\nVERSION:2.1\r\nFN:P\r\nPHOTO;TYPE=JPEG;ENCODING=BASE64:\r\n  /9j/4AAQ\r\n  SkZJRg==\r\n\r\n"
             "TEL:1\r\nEND:VCARD\r\n",
             "FN=P|N=//|TEL11=1|PHOTO=JPEG:10"},
        Case{"PhotoBase64LinesWithoutFoldBlank",
             "BEGIN:VCARD\nVERSION:2.1\nFN:P\nPHOTO;JPEG;BASE64:/9j/4AAQ\nSkZJRg==\n\nEND:VCARD\n",
             "FN=P|N=//|PHOTO=JPEG:10"},
        Case{"PhotoThatIsNoImageIsKeptAsBytes",
             "BEGIN:VCARD\nVERSION:3.0\nFN:P\nPHOTO;ENCODING=b;TYPE=PNG:aGVsbG8=\nEND:VCARD\n",
             "FN=P|N=//|PHOTO=PNG:5"},
        Case{"SniffedTypeBeatsTheLabel",
             "BEGIN:VCARD\nVERSION:3.0\nFN:P\nPHOTO;ENCODING=b;TYPE=GIF:" + kJpegB64 + "\nEND:VCARD\n",
             "FN=P|N=//|PHOTO=JPEG:10"},
        Case{"MacLineEnds", "BEGIN:VCARD\rVERSION:3.0\rFN:Mac\rTEL:1\rEND:VCARD\r", "FN=Mac|N=//|TEL11=1"},
        Case{"CrCrLfLineEndsWithFolds",
             "BEGIN:VCARD\r\r\nVERSION:3.0\r\r\nFN:Jo\r\r\n hn\r\r\nEND:VCARD\r\r\n", "FN=John|N=//"},
        Case{"BackslashAtLineEndContinues",
             "BEGIN:VCARD\r\nVERSION:2.1\r\nN:x\r\nADR;HOME:;;Street 1\\\r\nFlat 2;Town;;;\r\nEND:VCARD\r\n",
             "FN=|N=x//|ADR1=//Street 1\nFlat 2/Town///"},
        Case{"LowercaseNamesAndBlankBeforeBegin",
             "  begin:vcard\nversion:4.0\nfn:Low\nend:vcard\n", "FN=Low|N=//"},
        Case{"UnknownPropertiesAreSkipped",
             "BEGIN:VCARD\nVERSION:3.0\nX-FOO;ENCODING=QUOTED-PRINTABLE:a=\nFN:b\nFN:K\nNOTE:n\nEND:VCARD\n",
             "FN=K|N=//"},
        Case{"FirstNameOfSeveralWins",
             "BEGIN:VCARD\nVERSION:3.0\nFN:One\nFN:Two\nTITLE:A\nTITLE:B\nEND:VCARD\n", "FN=One|N=//|TITLE=A"},
        Case{"Utf8WithoutCharset", "BEGIN:VCARD\nVERSION:3.0\nFN:Zoë Ånström\nEND:VCARD\n", "FN=Zoë Ånström|N=//"},
        Case{"EightBitWithoutCharsetLatin",
             "BEGIN:VCARD\nVERSION:2.1\nFN:J\xFCrgen M\xFCller\nEND:VCARD\n", "FN=Jürgen Müller|N=//"},
        Case{"EightBitWithoutCharsetCyrillicWords",
             "BEGIN:VCARD\nVERSION:2.1\nFN:\xC8\xE2\xE0\xED \xCF\xE5\xF2\xF0\xEE\xE2\nEND:VCARD\n",
             "FN=Иван Петров|N=//"},
        Case{"UnknownCharsetFallsBackToTheBytes",
             "BEGIN:VCARD\nVERSION:2.1\nFN;CHARSET=MURKS:Caf\xC3\xA9\nEND:VCARD\n", "FN=Café|N=//"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Reader, Utf16FilesByTheirByteOrderMarkOrZeroBytes) {
    std::u16string text = u"BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Łukasz 日本\r\nEND:VCARD\r\n";
    auto encode = [&](bool big, bool bom) {
        std::string bytes;
        if (bom) bytes += big ? "\xFE\xFF" : "\xFF\xFE";
        for (char16_t u : text) {
            char hi = static_cast<char>(u >> 8), lo = static_cast<char>(u & 0xFF);
            if (big) { bytes += hi; bytes += lo; } else { bytes += lo; bytes += hi; }
        }
        return bytes;
    };
    for (bool big : {false, true}) {
        for (bool bom : {false, true}) {
            SCOPED_TRACE(std::string(big ? "big" : "little") + (bom ? " with BOM" : " without BOM"));
            EXPECT_EQ(FirstCard(encode(big, bom)), "FN=Łukasz 日本|N=//");
            EXPECT_EQ(FirstCard(encode(big, bom) + "\x01"), "FN=Łukasz 日本|N=//") << "a cut-off last byte";
        }
    }
}

TEST(Reader, Utf8ByteOrderMarkIsNotPartOfTheFirstLine) {
    EXPECT_EQ(FirstCard("\xEF\xBB\xBF" "BEGIN:VCARD\nVERSION:3.0\nFN:B\nEND:VCARD\n"), "FN=B|N=//");
}

TEST(Reader, SeveralCardsInsideAnAddressBookWrapper) {
    ReadResult r = ReadVCards(
        "BEGIN:VADDRESSBOOK\nBEGIN:VCARD\nVERSION:3.0\nFN:A\nEND:VCARD\nBEGIN:VCARD\nVERSION:3.0\nFN:B\n"
        "END:VCARD\nEND:VADDRESSBOOK\n",
        "book.vcf");
    ASSERT_EQ(r.cards.size(), 2u);
    EXPECT_EQ(r.cards[0].content.FullName, "A");
    EXPECT_EQ(r.cards[1].content.FullName, "B");
    EXPECT_EQ(r.cards[1].number, 2);
    EXPECT_EQ(r.cards[1].line, 6);
    EXPECT_TRUE(r.diagnostics.empty());
}

TEST(Reader, ABadPropertyLosesOnlyItself) {
    ReadResult r = ReadVCards(
        "BEGIN:VCARD\nVERSION:3.0\nFN:Kept\nthis line is garbage\nPHOTO;ENCODING=b:@@@@\nTEL:123\nEND:VCARD\n",
        "f.vcf");
    ASSERT_EQ(r.cards.size(), 1u);
    EXPECT_EQ(Render(r.cards[0].content), "FN=Kept|N=//|TEL11=123");
    ASSERT_EQ(r.diagnostics.size(), 2u);
    EXPECT_EQ(r.diagnostics[0].line, 4);
    EXPECT_EQ(r.diagnostics[1].line, 5);
    EXPECT_EQ(r.diagnostics[1].card, 1);
    EXPECT_EQ(r.diagnostics[1].severity, Severity::Warning);
    EXPECT_FALSE(r.HasErrors());
}

TEST(Reader, ABadCardLosesOnlyItselfAndIsReportedWithItsNumberAndLine) {
    ReadResult r = ReadVCards(
        "BEGIN:VCARD\nVERSION:3.0\nFN:First\nEND:VCARD\n"
        "BEGIN:VCARD\nVERSION:3.0\n\x01\x02\x03\nGEO:1,2\nEND:VCARD\n"
        "BEGIN:VCARD\nVERSION:3.0\nFN:Third\nEND:VCARD\n",
        "phone-backup.vcf");
    ASSERT_EQ(r.cards.size(), 2u);
    EXPECT_EQ(r.cards[0].content.FullName, "First");
    EXPECT_EQ(r.cards[1].content.FullName, "Third");
    EXPECT_EQ(r.cards[1].number, 3);
    ASSERT_TRUE(r.HasErrors());
    const Diagnostic& e = r.diagnostics.back();
    EXPECT_EQ(e.severity, Severity::Error);
    EXPECT_EQ(e.card, 2);
    EXPECT_EQ(e.line, 5);
    EXPECT_EQ(FormatDiagnostic(e).substr(0, 28), "phone-backup.vcf:5: card 2: ");
}

TEST(Reader, ACardCutOffByTheEndOfTheFileIsKeptWithAWarning) {
    ReadResult r = ReadVCards("BEGIN:VCARD\nVERSION:3.0\nFN:Cut\nTEL:1", "cut.vcf");
    ASSERT_EQ(r.cards.size(), 1u);
    EXPECT_EQ(Render(r.cards[0].content), "FN=Cut|N=//|TEL11=1");
    ASSERT_EQ(r.diagnostics.size(), 1u);
    EXPECT_EQ(r.diagnostics[0].severity, Severity::Warning);
}

TEST(Reader, NestedCardsAreSkippedNotMergedIntoTheOuterOne) {
    ReadResult r = ReadVCards(
        "BEGIN:VCARD\nVERSION:2.1\nN:parent\nBEGIN:VCARD\nVERSION:2.1\nN:nest1\nTEL:9\nEND:VCARD\nTEL:1\nEND:VCARD\n",
        "n.vcf");
    ASSERT_EQ(r.cards.size(), 1u);
    EXPECT_EQ(Render(r.cards[0].content), "FN=|N=parent//|TEL11=1");
}

TEST(Reader, TextThatIsNoVCardIsAnErrorNamingTheFile) {
    struct NotACard {
        const char* name;
        std::string bytes;
    };
    for (const auto& c : {NotACard{"empty", ""}, NotACard{"ldif", "dn: cn=Babs\ncn: Babs Jensen\n"},
                          NotACard{"binary", std::string("\x89PNG\r\n\x1A\n\0\0\0", 11)}}) {
        SCOPED_TRACE(c.name);
        ReadResult r = ReadVCards(c.bytes, "x.txt");
        EXPECT_FALSE(r.isVCard);
        EXPECT_TRUE(r.cards.empty());
        ASSERT_TRUE(r.HasErrors());
        EXPECT_EQ(r.diagnostics.back().file, "x.txt");
    }
}

TEST(Reader, ReportsAreCappedSoGarbageCannotGrowThemWithoutBound) {
    std::string text = "BEGIN:VCARD\nVERSION:3.0\nFN:x\n";
    for (int i = 0; i < 5000; ++i) text += "garbage\n";
    text += "END:VCARD\n";
    ReadOptions options;
    options.maxDiagnostics = 10;
    ReadResult r = ReadVCards(text, "g.vcf", options);
    ASSERT_EQ(r.diagnostics.size(), 11u);
    EXPECT_NE(r.diagnostics.back().reason.find("4990 further"), std::string::npos);
}

TEST(Reader, AFixedFallbackCharsetIsUsedForUnlabeledEightBitText) {
    ReadOptions options;
    options.fallbackCharset = "KOI8-R";
    ReadResult r = ReadVCards("BEGIN:VCARD\nFN:\xEF\xCC\xD8\xC7\xC1\nEND:VCARD\n", "k.vcf", options);
    ASSERT_EQ(r.cards.size(), 1u);
    EXPECT_EQ(r.cards[0].content.FullName, "Ольга");
}

}  // namespace
}  // namespace zelvo::vcard
