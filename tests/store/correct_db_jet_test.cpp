// CorrectDB on the genuine Jet books of earlier installations: found beside
// no book, or standing at the book's own place, each becomes a book with the
// file's tables and today's layout; a damaged one is reported and kept.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/dao/jet_file/jet_file_reader.h"
#include "platform/shell/file_system.h"
#include "store/correct_db.h"
#include "store_test_util.h"
#include "support/shared_data.h"

namespace zelvo::testing {
namespace {

using namespace zelvo::dao;


// Today's tables and saved queries, each present in the book.
void ExpectTodaysLayout(const Database& db) {
    for (const char* t : {"PersonalData", "Photo", "Organizations", "JobTitles", "Employees", "Rooms",
                          "PostAddresses", "AddressesOwners", "Resources", "ResourcesOwners", "Projects",
                          "PhoneTypes"})
        EXPECT_NO_THROW(db.TableDefs()(t)) << t;
    EXPECT_EQ(db.QueryDefs()("PersPrj").SQL(), "Select * from Projects Where Projects.OwnerType=0;");
    EXPECT_EQ(db.QueryDefs()("OrgPrj").SQL(), "Select * from Projects Where Projects.OwnerType=1;");
    // A table of the book that the old file did not have is whole.
    EXPECT_EQ(db.TableDefs()("Resources").Fields().Count(), 4);
}

class CorrectDbJetTest : public StoreTest {
protected:
    // A book that still stands for Jet 3 (a copy of a Jet 3 file compacted
    // without dbVersion40) opens, is found old by its Version, and is compacted
    // in place into a "4.0" book with its backup; the next run leaves it alone.
    void ExpectOldBookIsCompactedInPlace(const std::string& table, const std::string& rows) {
        {
            Database db = Engine().OpenDatabase(book());
            ASSERT_EQ(db.Version(), "3.0");
            db.Close();
        }
        const std::string old = ReadBytes(book());
        int reports = Reports();
        std::string path;
        CorrectDB(path);
        EXPECT_EQ(Reports(), reports);
        {
            Database db = Engine().OpenDatabase(book());
            EXPECT_EQ(db.Version(), "4.0");
            EXPECT_EQ(RowsText(db, "Select Count(*) From [" + table + "]"), rows);
            ExpectTodaysLayout(db);
            db.Close();
        }
        EXPECT_EQ(ReadBytes(InApp("~AddressBookW.mdb")), old);
        std::string again = book();
        std::string before = ReadBytes(book());
        CorrectDB(again);
        EXPECT_EQ(ReadBytes(book()), before);
    }
};

TEST_F(CorrectDbJetTest, GenuineJetBookBecomesABookFromEitherPlace) {
    ZELVO_NEEDS_GENUINE_JET();
    struct Case {
        const char* file;
        const char* table;
        long rows;
    };
    for (const Case& c : {Case{"nwind.mdb", "Umsätze", 830}, Case{"DateTestDatabase.mdb", "DateTest", 6}}) {
        for (bool atBooksPlace : {false, true}) {
            SCOPED_TRACE(std::string(c.file) + (atBooksPlace ? " as the book" : " as AddressBook.mdb"));
            for (const char* name : {"AddressBookW.mdb", "AddressBook.mdb", "~AddressBookW.mdb"})
                std::filesystem::remove(InApp(name));
            const std::string placed = atBooksPlace ? book() : InApp("AddressBook.mdb");
            std::filesystem::copy_file(SharedJetFile(c.file), placed);
            std::filesystem::permissions(placed, std::filesystem::perms::owner_write, std::filesystem::perm_options::add);
            const std::string original = ReadBytes(SharedJetFile(c.file));
            int reports = Reports();
            std::string path;
            CorrectDB(path);
            EXPECT_EQ(Reports(), reports);
            {
                Database db = Engine().OpenDatabase(book());
                EXPECT_EQ(RowsText(db, std::string("Select Count(*) From [") + c.table + "]"), std::to_string(c.rows));
                ExpectTodaysLayout(db);
                EXPECT_EQ(db.Version(), "4.0");
                db.Close();
            }
            // The old file stays: beside the book, or as the backup of the
            // compaction that converted it in place.
            EXPECT_EQ(ReadBytes(atBooksPlace ? InApp("~AddressBookW.mdb") : placed), original);
            EXPECT_EQ(shell::GetAttributes(book()) & shell::kHidden, shell::kHidden);
            std::string again = book();
            std::string before = ReadBytes(book());
            CorrectDB(again);
            EXPECT_EQ(ReadBytes(book()), before);
        }
    }
}

TEST_F(CorrectDbJetTest, BookStandingForJet3IsCompactedIntoAJet4Book) {
    {
        Database db = Engine().CreateDatabase(book(), {}, dbVersion30);
        db.Execute("Create Table Notes (Body Text(50))");
        db.Execute("Insert Into Notes (Body) Values (\"kept\")");
        db.Close();
    }
    ExpectOldBookIsCompactedInPlace("Notes", "1");
}

TEST_F(CorrectDbJetTest, GenuineJet3CopiedAsItIsTakesTheOldBooksWay) {
    ZELVO_NEEDS_GENUINE_JET();
    Engine().CompactDatabase(SharedJetFile("nwind.mdb"), book());
    ExpectOldBookIsCompactedInPlace("Umsätze", "830");
}

TEST_F(CorrectDbJetTest, DamagedJetBookIsReportedWithTheReasonAndKept) {
    ZELVO_NEEDS_GENUINE_JET();
    const std::string whole = ReadBytes(SharedJetFile("nwind.mdb"));
    const std::string cut = whole.substr(0, whole.size() / 2 + 100);
    for (bool atBooksPlace : {false, true}) {
        SCOPED_TRACE(atBooksPlace ? "as the book" : "as AddressBook.mdb");
        for (const char* name : {"AddressBookW.mdb", "AddressBook.mdb", "~AddressBookW.mdb"})
            std::filesystem::remove(InApp(name));
        const std::string placed = atBooksPlace ? book() : InApp("AddressBook.mdb");
        WriteBytes(placed, cut);
        int reports = Reports();
        std::string path;
        CorrectDB(path);
        EXPECT_EQ(Reports(), reports + 1);
        EXPECT_EQ(ReadBytes(placed), cut);
        if (!atBooksPlace) {
            EXPECT_FALSE(shell::FileExists(book()));
        }
        EXPECT_FALSE(shell::FileExists(InApp("~~AddressBookW.mdb")));
        EXPECT_FALSE(shell::FileExists(book() + ".converting"));
    }
    std::string log = ReadBytes(InApp(".settings/zelvo.log"));
    EXPECT_NE(log.find("truncated"), std::string::npos) << log;
}

}  // namespace
}  // namespace zelvo::testing
