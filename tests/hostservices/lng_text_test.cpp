// The language lookup: catalogues by language, defaults where they say
// nothing, and the shipped English catalogue against the code's defaults.
#include "hostservices/lng_text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "lang_scan.h"
#include "platform/core/error.h"
#include "platform/shell/lng_res.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

std::string Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Points the component at a folder of its own and a language, and puts the
// environment back afterwards.
class LngTextTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* v : {"ZELVO_LANG", "ZELVO_LANG_DIR", "LC_ALL", "LC_MESSAGES", "LANG"}) {
            const char* old = std::getenv(v);
            saved_.emplace_back(v, old ? std::optional<std::string>(old) : std::nullopt);
            unsetenv(v);
        }
        setenv("ZELVO_LANG_DIR", dir_.path().c_str(), 1);
        shell::ForgetCatalogues();
    }
    void TearDown() override {
        for (const auto& [name, value] : saved_) {
            if (value) setenv(name.c_str(), value->c_str(), 1);
            else unsetenv(name.c_str());
        }
        shell::ForgetCatalogues();
    }
    void Write(const std::string& name, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(dir_.File(name)).parent_path());
        std::ofstream(dir_.File(name), std::ios::binary) << text;
        shell::ForgetCatalogues();
    }
    void Language(const char* var, const char* value) {
        setenv(var, value, 1);
        shell::ForgetCatalogues();
    }

    TempDir dir_;
    std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

constexpr const char* kGerman =
    "\xEF\xBB\xBF; Deutsch\n"
    "[Module1.CompressDB]\n"
    "Cap1=Sicherung der Datenbank ...\n"
    "  cap3  =  Komprimierung ...  \n"
    "\n"
    "[frmMain.ReadData]\n"
    "msg=\" Person nicht gefunden! \"\n"
    "pmt1=Zeile eins vbcrlf Zeile %1\n";

TEST_F(LngTextTest, WithoutACatalogueEveryTextIsItsDefault) {
    Language("ZELVO_LANG", "de");
    EXPECT_EQ(LngText("Module1.CompressDB", "Cap1", "Creating a database backup ..."),
              "Creating a database backup ...");
    EXPECT_EQ(LngHelpFile(), "");
}

TEST_F(LngTextTest, CatalogueOfTheChosenLanguageAnswers) {
    Write("de.lng", kGerman);
    Language("ZELVO_LANG", "de");
    EXPECT_EQ(LngText("Module1.CompressDB", "Cap1", "x"), "Sicherung der Datenbank ...");
    EXPECT_EQ(LngText("module1.compressdb", "CAP3", "x"), "Komprimierung ...");  // names ignore case
    EXPECT_EQ(LngText("frmMain.ReadData", "msg", "x"), " Person nicht gefunden! ");
    EXPECT_EQ(LngText("frmMain.ReadData", "pmt1", "x"), "Zeile eins vbcrlf Zeile %1");
    // What the catalogue does not know is the default.
    EXPECT_EQ(LngText("Module1.CompressDB", "Cap2", "Preparations ..."), "Preparations ...");
    EXPECT_EQ(LngText("frmNone", "Caption", "Address Book"), "Address Book");
}

TEST_F(LngTextTest, LanguageComesFromTheLocaleUnlessChosen) {
    Write("de.lng", kGerman);
    Write("fr.lng", "[Module1.CompressDB]\nCap1=Sauvegarde ...\n");
    Language("LANG", "fr_FR.UTF-8");
    EXPECT_EQ(LngText("Module1.CompressDB", "Cap1", "x"), "Sauvegarde ...");
    Language("LC_ALL", "de_AT@euro");
    EXPECT_EQ(LngText("Module1.CompressDB", "Cap1", "x"), "Sicherung der Datenbank ...");
    Language("ZELVO_LANG", "fr");
    EXPECT_EQ(LngText("Module1.CompressDB", "Cap1", "x"), "Sauvegarde ...");
    Language("ZELVO_LANG", "C");  // says nothing: the locale decides
    EXPECT_EQ(LngText("Module1.CompressDB", "Cap1", "x"), "Sicherung der Datenbank ...");
    Language("LC_ALL", "POSIX");
    EXPECT_EQ(shell::LngRes().Language(), "en");
}

TEST_F(LngTextTest, HelpFileOfTheLanguageElseEnglish) {
    Language("ZELVO_LANG", "de");
    Write("en/zelvo.html", "<html>en</html>");
    EXPECT_EQ(LngHelpFile(), dir_.File("en/zelvo.html"));
    Write("de/zelvo.html", "<html>de</html>");
    EXPECT_EQ(LngHelpFile(), dir_.File("de/zelvo.html"));
}

TEST_F(LngTextTest, BrokenCatalogueIsReportedByTheReaderAndAnswersDefaults) {
    Write("de.lng", "[A]\nKey=Text\nno equals sign here\n");
    try {
        shell::ReadCatalogue(dir_.File("de.lng"));
        FAIL() << "no error";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 75);
        EXPECT_NE(e.description().find("line 3"), std::string::npos) << e.description();
    }
    Language("ZELVO_LANG", "de");
    EXPECT_EQ(LngText("A", "Key", "Default"), "Default");
}

TEST(LangScan, FindsLiteralCallsOnly) {
    const std::string source = R"src(
        // LngText("In", "a comment", "no")
        /* LngText("In", "a block", "no") */
        auto a = LngText("frmA.Load",
                         "Caption",   // the window's title
                         "Address "
                         "Book");
        auto b = LngText(section, "Key", "not a literal section");
        auto c = MyLngText("X", "Y", "another function");
        auto d = LngText("S", "Quote", "He said \"hi\"\tand \\ left");
        const char* e = "LngText(\"In\", \"a string\", \"no\")";
    )src";
    auto found = ScanSource(source, "f.cpp");
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].section + "/" + found[0].key + "=" + found[0].text, "frmA.Load/Caption=Address Book");
    EXPECT_EQ(found[0].where, "f.cpp:4");
    EXPECT_EQ(found[1].text, "He said \"hi\"\tand \\ left");
}

TEST(LangScan, CatalogueListsEachTextOnceAndNamesConflicts) {
    std::vector<SourceText> texts = {{"B", "k1", " padded ", "b.cpp:1"},
                                     {"A", "k", "one", "a.cpp:1"},
                                     {"a", "K", "one", "a.cpp:9"},
                                     {"B", "k1", "other", "c.cpp:5"}};
    std::vector<std::string> conflicts;
    std::string text = CatalogueText(texts, &conflicts);
    EXPECT_NE(text.find("\n[A]\nk=one\n\n[B]\nk1=\" padded \"\n"), std::string::npos) << text;
    EXPECT_EQ(conflicts, std::vector<std::string>{"B/k1: b.cpp:1 vs c.cpp:5"});
}

// The shipped English catalogue is what the code's defaults make, so a
// translator who starts from it misses no text. When this fails after a
// text was added or changed, rebuild the catalogue:
//   cmake --build <build folder> --target lang-catalogue
TEST(ShippedCatalogue, AgreesWithTheDefaultsInTheCode) {
    std::vector<std::string> conflicts;
    auto texts = ScanFolder(ZELVO_SOURCE_DIR "/src");
    std::string made = CatalogueText(texts, &conflicts);
    EXPECT_TRUE(conflicts.empty()) << "one text, two defaults: " << ::testing::PrintToString(conflicts);
    std::string shipped = Read(ZELVO_SOURCE_DIR "/src/hostservices/lang/en.lng");
    EXPECT_EQ(shipped, made) << "run: cmake --build <build folder> --target lang-catalogue";
    ASSERT_FALSE(texts.empty());

    // Read back through the component, every text is its default.
    auto catalogue = shell::ReadCatalogue(ZELVO_SOURCE_DIR "/src/hostservices/lang/en.lng");
    for (const auto& t : texts) {
        auto lower = [](std::string s) {
            for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            return s;
        };
        EXPECT_EQ(catalogue[lower(t.section)][lower(t.key)], t.text) << t.where;
    }
}

}  // namespace
}  // namespace zelvo::testing
