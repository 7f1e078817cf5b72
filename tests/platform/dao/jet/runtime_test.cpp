// The runtime the translated SQL calls: the JET collation and Jet's Like.
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/dao/jet/jet_sql.h"
#include "platform/dao/jet/like.h"

namespace zelvo::dao::jet {
namespace {

int Sign(int x) { return (x > 0) - (x < 0); }

TEST(CompareText, IgnoresCaseButNotAccents) {
    struct Case {
        const char* a;
        const char* b;
        int sign;
    };
    const Case cases[] = {
        {"ИВАНОВ", "иванов", 0},   {"Smith", "SMITH", 0},  {"e", "é", -1},
        {"é", "f", -1},            {"a", "B", -1},         {"B", "a", 1},            {"", "", 0},
        {"", "a", -1},             {"abc", "ab", 1},       {"Ærø", "ærø", 0},        {"Zürich", "zürich", 0},
        {"apple", "Äpfel", 1},     {"10", "9", -1},        {"a\x01", "a", 0},        {"Привет", "ПРИВЕТ", 0},
    };
    for (const Case& c : cases) EXPECT_EQ(Sign(CompareText(c.a, c.b)), c.sign) << c.a << " vs " << c.b;
}

// The ASCII fast path must order exactly as ICU does, or an index built
// with one path would be searched with the other.
TEST(CompareText, AsciiFastPathAgreesWithIcu) {
    std::mt19937 rng(12345);
    const std::string alphabet =
        std::string("aAbBzZ09 -'_.,;:!?@#$%&*()[]{}<>/\\|~^`\"+=\t\n\x01\x1f\x7f") + "mMnN";
    auto random = [&](int maxLen) {
        std::string s;
        int n = static_cast<int>(rng() % (maxLen + 1));
        for (int i = 0; i < n; ++i) s += alphabet[rng() % alphabet.size()];
        return s;
    };
    for (int i = 0; i < 20000; ++i) {
        std::string a = random(6), b = random(6);
        ASSERT_EQ(Sign(CompareText(a, b)), Sign(CompareTextWithIcu(a, b))) << "[" << a << "] vs [" << b << "]";
    }
    // Every single character too.
    for (int x = 0; x < 128; ++x)
        for (int y = 0; y < 128; ++y) {
            std::string a(1, static_cast<char>(x)), b(1, static_cast<char>(y));
            ASSERT_EQ(Sign(CompareText(a, b)), Sign(CompareTextWithIcu(a, b))) << x << " vs " << y;
        }
}

// A list sorts by collation keys made once per row: byte order of the keys
// must be the comparison's order, on ASCII, on other letters, on a mix, and
// on a text that is not valid UTF-8.
TEST(CompareText, CollationKeysOrderAsTheComparison) {
    std::mt19937 rng(777);
    const std::vector<std::string> pieces = {"a", "A", "b", "Z", "0", "9", " ", "-", "'", "\x01", "é", "É", "ё",
                                             "Ж", "ж", "ß", "ss", "Æ", "中", "\xff", "\xc3", "😀"};
    auto random = [&](int maxLen) {
        std::string s;
        int n = static_cast<int>(rng() % (maxLen + 1));
        for (int i = 0; i < n; ++i) s += pieces[rng() % pieces.size()];
        return s;
    };
    for (int i = 0; i < 20000; ++i) {
        std::string a = random(5), b = random(5);
        std::string ka = CollationKey(a), kb = CollationKey(b);
        int keys = ka < kb ? -1 : (ka == kb ? 0 : 1);
        ASSERT_EQ(keys, Sign(CompareText(a, b))) << "[" << a << "] vs [" << b << "]";
    }
    EXPECT_EQ(CollationKey("ИВАНОВ"), CollationKey("иванов"));
    EXPECT_LT(CollationKey(std::string(300, 'b') + "a"), CollationKey(std::string(300, 'b') + "c"));
}

TEST(CompareText, IsATotalOrderOnMixedText) {
    std::vector<std::string> words = {"Иванов", "иванов", "Ivanov", "ivanov", "Éclair", "eclair", "Eclair",
                                      "zebra",  "Zebra",  "",       "a",      "A b",    "a-b",    "ab",
                                      "Straße", "strasse", "ё",     "е",      "Ё",      "10",     "9"};
    std::sort(words.begin(), words.end(), [](const std::string& a, const std::string& b) { return CompareText(a, b) < 0; });
    for (std::size_t i = 0; i < words.size(); ++i)
        for (std::size_t j = 0; j < words.size(); ++j) {
            int ij = Sign(CompareText(words[i], words[j]));
            EXPECT_EQ(ij, -Sign(CompareText(words[j], words[i]))) << words[i] << " / " << words[j];
            if (i < j) {
                EXPECT_LE(ij, 0) << words[i] << " / " << words[j];
            }
        }
}

TEST(JetLike, MatchesAsJetDoes) {
    struct Case {
        const char* text;
        const char* pattern;
        bool match;
    };
    const Case cases[] = {
        {"Smith", "sm*", true},        {"Smith", "*TH", true},        {"Smith", "S?ith", true},
        {"Smith", "S?th", false},      {"Room 101", "Room ###", true}, {"Room 1a1", "Room ###", false},
        {"b", "[a-c]", true},          {"B", "[a-c]", true},          {"d", "[a-c]", false},
        {"d", "[!a-c]", true},         {"b", "[!a-c]", false},        {"*", "[*]", true},
        {"a", "[*]", false},           {"?", "[?]", true},            {"#", "[#]", true},
        {"[", "[[]", true},            {"-", "[-a]", true},           {"-", "[a-]", true},
        {"ab", "a[]b", true},          {"a%b", "a%b", true},          {"axb", "a%b", false},
        {"a_b", "a_b", true},          {"axb", "a_b", false},         {"ИВАНОВ", "иван*", true},
        {"Ёлка", "ё*", true},          {"", "*", true},               {"", "?", false},
        {"abc", "a*b*c*", true},       {"abcabd", "*abd", true},      {"aaaaaaaaaaaaaaaaaaaaaaaaaaaaab", "*a*a*a*a*a*c", false},
        {"abc", "[a", false},          {"x", "", false},              {"", "", true},
    };
    for (const Case& c : cases) EXPECT_EQ(JetLike(c.text, c.pattern), c.match) << c.text << " Like " << c.pattern;
}

}  // namespace
}  // namespace zelvo::dao::jet
