// The reader and the writer on real cards written by many programs: the
// shared corpus (see its README.md and MANIFEST.tsv for where each file
// comes from and which ones are broken on purpose).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "platform/vcard/vcard_document.h"
#include "platform/vcard/vcard_writer.h"

namespace zelvo::vcard {
namespace {

namespace fs = std::filesystem;

const fs::path kCorpus = fs::path(ZELVO_SHARED_DATA) / "vcard";

std::string Slurp(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

// File name → the manifest's notes column.
std::map<std::string, std::string> Manifest() {
    std::map<std::string, std::string> notes;
    std::ifstream in(kCorpus / "MANIFEST.tsv");
    std::string line;
    std::getline(in, line);  // header
    while (std::getline(in, line)) {
        std::vector<std::string> cols;
        std::stringstream ss(line);
        std::string col;
        while (std::getline(ss, col, '\t')) cols.push_back(col);
        if (cols.size() >= 7) notes[cols[0]] = cols[6];
    }
    return notes;
}

class Corpus : public ::testing::Test {
protected:
    void SetUp() override {
        if (!fs::is_directory(kCorpus)) GTEST_SKIP() << "no corpus at " << kCorpus;
    }
    ReadResult Read(const std::string& name) { return ReadVCards(Slurp(kCorpus / name), name); }
    const ReadCard& Only(const ReadResult& r) {
        EXPECT_EQ(r.cards.size(), 1u);
        static const ReadCard none{};
        return r.cards.empty() ? none : r.cards[0];
    }
};

TEST_F(Corpus, EveryFileIsReadAndEveryBrokenOneIsReported) {
    auto notes = Manifest();
    ASSERT_GT(notes.size(), 200u);
    // Files whose fault lies only in properties the book does not take.
    const std::map<std::string, std::string> faultOutsideTakenFields = {
        {"folkerkinzel-vcards__Utf-8_Greek.vcf", "the mislabelled charset is on LABEL"},
    };
    int files = 0, cards = 0;
    for (const auto& [name, note] : notes) {
        SCOPED_TRACE(name);
        ReadResult r = Read(name);
        ++files;
        cards += static_cast<int>(r.cards.size());
        for (const auto& c : r.cards) EXPECT_GE(c.number, 1);
        bool broken = note.find("malformed:") != std::string::npos;
        if (broken && !faultOutsideTakenFields.count(name)) {
            EXPECT_FALSE(r.diagnostics.empty()) << "broken file read without a word: " << note;
        }
        if (note.find("malformed: empty file") != std::string::npos) EXPECT_TRUE(r.HasErrors());
    }
    EXPECT_EQ(files, static_cast<int>(notes.size()));
    EXPECT_GT(cards, 1300);
}

TEST_F(Corpus, CardCountsOfFilesWithManyCards) {
    struct Case {
        const char* file;
        std::size_t cards;
    };
    for (const auto& c : {Case{"folkerkinzel-vcards__LargeFile.vcf", 1000}, Case{"qtpim-symbian__vcard02.vcf", 56},
                          Case{"ical4j-vcard__vcard-vCards-SAP.vcf", 30}, Case{"syncevolution__eds_contact.vcf", 17},
                          Case{"android-vcard__v21_multiple_entry.vcf", 3}, Case{"radicale__broken-vcards.vcf", 2}}) {
        EXPECT_EQ(Read(c.file).cards.size(), c.cards) << c.file;
    }
}

TEST_F(Corpus, ShiftJisNamesFromAJapanesePhone) {
    ReadResult r = Read("android-vcard__v21_japanese_3.vcf");
    const auto& c = Only(r).content;
    EXPECT_EQ(c.FullName, "伊能 圭一 伊予");
    EXPECT_EQ(c.FirstName, "伊能");
    EXPECT_EQ(c.MiddleName, "圭一");
}

TEST_F(Corpus, UnlabeledWindows1251FromAUkrainianExport) {
    ReadResult r = Read("folkerkinzel-vcards__TestFiles_Ukrainian.vcf");
    const auto& c = Only(r).content;
    EXPECT_EQ(c.FirstName, "Кличко");
    EXPECT_EQ(c.MiddleName, "Віталій");
    EXPECT_EQ(c.SurName, "Володимирович");
}

TEST_F(Corpus, QuotedPrintableWindows1252FromAGermanExport) {
    ReadResult r = Read("folkerkinzel-vcards__German.vcf");
    ASSERT_FALSE(r.cards.empty());
    std::string all;
    for (const auto& c : r.cards) all += c.content.FullName + "|" + c.content.FirstName + "|";
    EXPECT_NE(all.find("ü"), std::string::npos) << all;
    EXPECT_EQ(all.find("\xEF\xBF\xBD"), std::string::npos) << "no replacement characters: " << all;
}

TEST_F(Corpus, OutlookPhotoFoldedWithLeadingBlanks) {
    ReadResult r = Read("ez-vcard__outlook-2007.vcf");
    const auto& c = Only(r).content;
    EXPECT_EQ(c.Photo.ImageType(), "JPEG");
    EXPECT_GT(c.Photo.Data().size(), 1000u);
    EXPECT_EQ(c.Photo.Data().substr(c.Photo.Data().size() - 2), "\xFF\xD9") << "the JPEG is whole";
}

TEST_F(Corpus, IosCardWithCrCrLfLineEndsAndGroups) {
    ReadResult r = Read("android-vcard__v30_ios_613_multiline.vcf");
    const auto& card = Only(r);
    const auto& c = card.content;
    EXPECT_EQ(c.FullName, "Bob Smith");
    ASSERT_EQ(c.Emails.Count(), 1);
    EXPECT_EQ(c.Emails.Item(1), "bob@smithauto.com");
    ASSERT_EQ(c.Phones.Count(), 1);
    EXPECT_EQ(c.Phones.PhoneType(1), kPhoneCell);
    EXPECT_EQ(c.Photo.ImageType(), "JPEG");
    ASSERT_EQ(c.Organization.Count(), 2);
    EXPECT_EQ(c.Organization.Item(1), "Smith Auto Repair");
}

TEST_F(Corpus, Utf16WithoutByteOrderMark) {
    ReadResult r = Read("qtpim__Entourage11-basic.vcf");
    const auto& c = Only(r).content;
    EXPECT_EQ(c.FullName, "Firstname Lastname");
    EXPECT_EQ(c.FirstName, "Lastname");
    EXPECT_EQ(c.MiddleName, "Firstname");
}

TEST_F(Corpus, Version4PhotoAsDataUri) {
    ReadResult r = Read("khard__photov4.vcf");
    const auto& c = Only(r).content;
    EXPECT_EQ(c.Photo.ImageType(), "PNG");
    EXPECT_EQ(SniffImageType(c.Photo.Data()), "PNG") << "the comma before the data was escaped";
}

TEST_F(Corpus, WorkAndHomeKindsFromAnEvolutionCard) {
    ReadResult r = Read("eds__8.vcf");
    const auto& c = Only(r).content;
    EXPECT_EQ(c.FullName, "Frank Dawson");
    ASSERT_EQ(c.Organization.Count(), 1);
    EXPECT_EQ(c.Organization.Item(1), "Lotus Development Corporation");
    ASSERT_EQ(c.Addresses.Count(), 1);
    EXPECT_EQ(c.Addresses.AddressKind(1), kKindWork);
    EXPECT_EQ(c.Addresses.Street(1), "6544 Battleford Drive");
    EXPECT_EQ(c.Addresses.City(1), "Raleigh");
    EXPECT_EQ(c.Addresses.Country(1), "U.S.A.");
    ASSERT_GE(c.Phones.Count(), 2);
    EXPECT_EQ(c.Phones.PhoneKind(1), kKindWork);
    EXPECT_EQ(c.Phones.PhoneType(2), kPhoneFax);
    EXPECT_EQ(c.Urls.Url(1), "http://home.earthlink.net/~fdawson");
}

TEST_F(Corpus, AMalformedPhotoIsDroppedAndTheNameKept) {
    ReadResult r = Read("android-vcard__v21_malformed_photo.vcf");
    const auto& c = Only(r).content;
    EXPECT_FALSE(c.FullName.empty() && c.FirstName.empty());
    EXPECT_TRUE(c.Photo.Data().empty());
    EXPECT_FALSE(r.diagnostics.empty());
}

TEST_F(Corpus, EveryCardSurvivesWriteAndReadBack) {
    int checked = 0;
    for (const auto& entry : fs::directory_iterator(kCorpus)) {
        if (entry.path().extension() != ".vcf") continue;
        std::string name = entry.path().filename().string();
        ReadResult r = Read(name);
        for (const auto& card : r.cards) {
            std::string text = WriteVCard(card.content);
            ReadResult back = ReadVCards(text, "rewritten.vcf");
            ASSERT_EQ(back.cards.size(), 1u) << name << " card " << card.number;
            EXPECT_EQ(back.cards[0].content, card.content) << name << " card " << card.number << "\n" << text;
            for (const auto& d : back.diagnostics) {
                // Photos that are no image are reported again; anything else is the writer's fault.
                EXPECT_NE(d.reason.find("PHOTO"), std::string::npos) << name << ": " << FormatDiagnostic(d);
            }
            ++checked;
        }
    }
    EXPECT_GT(checked, 1300);
}

}  // namespace
}  // namespace zelvo::vcard
