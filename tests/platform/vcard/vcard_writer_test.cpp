// The writer's text and the document's file handling (dialogs, errors).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/core/error.h"
#include "platform/ui/ui_host.h"
#include "platform/vcard/vcard_document.h"
#include "platform/vcard/vcard_writer.h"

namespace zelvo::vcard {
namespace {

namespace fs = std::filesystem;

VCardContent RichCard() {
    VCardContent c;
    c.FullName = "Ан\u043d\u0430 O'Neil, Jr.; \"Q\"";
    c.FirstName = "O'Neil";
    c.MiddleName = "Анна";
    c.SurName = "Сергеевна";
    c.Title = "Head of R&D\nsecond line";
    c.Organization.Parse("Acme, Inc.,Research,", ",");  // levels: "Acme", " Inc.", "Research", ""
    c.Phones.Add(1, "+7 (495) 123-45-67", kKindWork, kPhoneVoice);
    c.Phones.Add(1, "+7 916 000 00 00", kKindHome, kPhoneCell);
    c.Emails.Add(1, "anna@example.org", kKindHome, 0);
    c.Emails.Add(1, "a.oneil@acme.example", kKindWork, 1);
    c.Urls.Add(1, "https://example.org/a?b=1;c=2,3", kKindWork);
    c.Addresses.Add({"", "", "ул. Ленина, 1, кв. 5", "Москва", "Московская обл.", "101000", "Россия", 1}, 0);
    c.Addresses.Add({"PO 7", "Suite 9", "1 Main St", "Springfield", "IL", "62701", "USA", 2}, 1);
    std::string jpeg = "\xFF\xD8\xFF\xE0";
    for (int i = 0; i < 300; ++i) jpeg.push_back(static_cast<char>(i));
    c.Photo.SetData(jpeg);
    c.Photo.SetImageType("JPEG");
    return c;
}

TEST(Writer, LinesAreCrlfAndFoldedAt75OctetsWithoutSplittingCharacters) {
    VCardContent c = RichCard();
    c.FullName = std::string(40, 'x') + "ЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖЖ";
    std::string text = WriteVCard(c);
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find("\r\n", start);
        ASSERT_NE(end, std::string::npos) << "every line ends in CRLF";
        std::string_view line(text.data() + start, end - start);
        EXPECT_LE(line.size(), 75u) << line;
        EXPECT_EQ(line.find('\n'), std::string_view::npos);
        EXPECT_EQ(line.find('\r'), std::string_view::npos);
        // A line never starts with a UTF-8 continuation byte after the fold blank.
        if (!line.empty() && line[0] == ' ' && line.size() > 1) {
            EXPECT_NE(static_cast<unsigned char>(line[1]) & 0xC0, 0x80) << line;
        }
        start = end + 2;
    }
    EXPECT_TRUE(text.starts_with("BEGIN:VCARD\r\nVERSION:3.0\r\n"));
    EXPECT_TRUE(text.ends_with("END:VCARD\r\n"));
}

TEST(Writer, WritesTheExpectedProperties) {
    std::string text = WriteVCard(RichCard());
    // Unfold to check whole properties.
    std::string unfolded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 3, "\r\n ") == 0) { i += 2; continue; }
        unfolded.push_back(text[i]);
    }
    for (const char* expected : {
             "N:O'Neil;Анна;Сергеевна;;\r\n",
             "FN:Анна O'Neil\\, Jr.\\; \"Q\"\r\n",
             "ORG:Acme; Inc.;Research;\r\n",
             "TITLE:Head of R&D\\nsecond line\r\n",
             "TEL;TYPE=WORK,VOICE:+7 (495) 123-45-67\r\n",
             "TEL;TYPE=HOME,CELL:+7 916 000 00 00\r\n",
             "EMAIL;TYPE=INTERNET,WORK,PREF:a.oneil@acme.example\r\n",
             "URL;TYPE=WORK:https://example.org/a?b=1;c=2,3\r\n",
             "ADR;TYPE=HOME:;;ул. Ленина\\, 1\\, кв. 5;Москва;Московская обл.;101000;Россия\r\n",
             "ADR;TYPE=WORK,PREF:PO 7;Suite 9;1 Main St;Springfield;IL;62701;USA\r\n",
             "PHOTO;ENCODING=b;TYPE=JPEG:/9j/4A",
         }) {
        EXPECT_NE(unfolded.find(expected), std::string::npos) << expected << "\nin\n" << unfolded;
    }
}

TEST(Writer, ReadingTheTextBackGivesTheSameCard) {
    VCardContent c = RichCard();
    ReadResult r = ReadVCards(WriteVCard(c), "rt.vcf");
    ASSERT_EQ(r.cards.size(), 1u);
    EXPECT_EQ(r.cards[0].content, c);
    EXPECT_TRUE(r.diagnostics.empty());
}

TEST(Writer, AnEmptyCardStillHasTheNamesThatVersion3Requires) {
    EXPECT_EQ(WriteVCard(VCardContent{}), "BEGIN:VCARD\r\nVERSION:3.0\r\nN:;;;;\r\nFN:\r\nEND:VCARD\r\n");
}

// A UiHost that answers the file dialogs from a script and records the asks.
class FakeHost : public ui::UiHost {
public:
    std::string openAnswer, saveAnswer;
    std::vector<ui::FileDialogRequest> opened, saved;
    std::string ShowOpenDialog(const ui::FileDialogRequest& r) override {
        opened.push_back(r);
        return openAnswer;
    }
    std::string ShowSaveDialog(const ui::FileDialogRequest& r) override {
        saved.push_back(r);
        return saveAnswer;
    }
};

class DocumentFiles : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() / ("zelvo-vcard-" + std::to_string(::getpid()) + "-" +
                                            ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(dir_);
        previous_ = ui::SetUiHost(&host_);
    }
    void TearDown() override {
        ui::SetUiHost(previous_);
        fs::remove_all(dir_);
    }
    fs::path dir_;
    FakeHost host_;
    ui::UiHost* previous_ = nullptr;
};

TEST_F(DocumentFiles, SaveWithAnEmptyPathAsksAndGivesBackTheChosenFile) {
    VCardDocument doc;
    doc.SetFullName("Анна");
    host_.saveAnswer = (dir_ / "anna.vcf").string();
    std::string path;
    EXPECT_TRUE(doc.SaveFile(path));
    EXPECT_EQ(path, host_.saveAnswer);
    ASSERT_EQ(host_.saved.size(), 1u);
    EXPECT_EQ(host_.saved[0].defaultExtension, "vcf");
    EXPECT_EQ(host_.saved[0].fileName, "Анна.vcf");

    VCardDocument back;
    std::string again = path;
    ASSERT_TRUE(back.LoadFile(again));
    EXPECT_EQ(back.FullName(), "Анна");
    EXPECT_TRUE(host_.opened.empty()) << "a given path asks nothing";
}

TEST_F(DocumentFiles, GivingUpTheSaveDialogLeavesThePathEmptyAndWritesNothing) {
    VCardDocument doc;
    std::string path;
    EXPECT_FALSE(doc.SaveFile(path));
    EXPECT_TRUE(path.empty());
    EXPECT_TRUE(fs::is_empty(dir_));
}

TEST_F(DocumentFiles, LoadWithAnEmptyPathAsksTheOpenDialog) {
    std::ofstream(dir_ / "two.vcf") << "BEGIN:VCARD\nFN:A\nEND:VCARD\nBEGIN:VCARD\nFN:B\nEND:VCARD\n";
    host_.openAnswer = (dir_ / "two.vcf").string();
    VCardDocument doc;
    std::string path;
    ASSERT_TRUE(doc.LoadFile(path));
    EXPECT_EQ(path, host_.openAnswer);
    EXPECT_EQ(doc.FullName(), "A");
    EXPECT_EQ(doc.CardCount(), 2);
    ASSERT_TRUE(doc.LoadCard(2));
    EXPECT_EQ(doc.FullName(), "B");
    EXPECT_FALSE(doc.LoadCard(3));
    EXPECT_EQ(doc.FullName(), "B");
}

TEST_F(DocumentFiles, GivingUpTheOpenDialogLoadsNothing) {
    VCardDocument doc;
    doc.SetFullName("stale");
    std::string path;
    EXPECT_FALSE(doc.LoadFile(path));
    EXPECT_EQ(doc.FullName(), "");
    EXPECT_EQ(host_.opened.size(), 1u);
}

TEST_F(DocumentFiles, AMissingFileIsReportedNotThrown) {
    VCardDocument doc;
    std::string path = (dir_ / "nope.vcf").string();
    EXPECT_FALSE(doc.LoadFile(path));
    ASSERT_EQ(doc.Diagnostics().size(), 1u);
    EXPECT_EQ(doc.Diagnostics()[0].file, path);
    EXPECT_EQ(doc.Diagnostics()[0].severity, Severity::Error);
}

TEST_F(DocumentFiles, SavingOverAnExistingFileReplacesItWhole) {
    std::ofstream(dir_ / "old.vcf") << std::string(10000, 'x');
    VCardDocument doc;
    doc.SetFullName("New");
    std::string path = (dir_ / "old.vcf").string();
    ASSERT_TRUE(doc.SaveFile(path));
    std::ifstream in(path, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    EXPECT_EQ(ss.str(), doc.ToText());
    EXPECT_EQ(std::distance(fs::directory_iterator(dir_), fs::directory_iterator()), 1) << "no leftovers";
}

TEST_F(DocumentFiles, AFileThatCannotBeWrittenRaisesError75) {
    VCardDocument doc;
    std::string path = (dir_ / "no-such-folder" / "x.vcf").string();
    try {
        doc.SaveFile(path);
        FAIL() << "no error raised";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 75);
        EXPECT_NE(e.description().find("no-such-folder"), std::string::npos);
    }
}

}  // namespace
}  // namespace zelvo::vcard
