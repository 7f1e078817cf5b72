// CompactDatabase as the book's compression uses it: a compacted copy in a
// new file, never a change to the source, refused while anyone holds the
// source, with counters that go on from the highest number left.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "dao_test_util.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using dao::Database;
using dao::Engine;
using dao::Recordset;
namespace fs = std::filesystem;

class Compact : public ::testing::Test {
protected:
    void SetUp() override {
        Database db = CreateSampleBook(source);
        db.Execute("Delete From Resources Where [Resource ID]=4");  // the highest number
        db.Close();
        original = ReadAll(source);
    }
    // The source has not changed, and no copy was left behind.
    void ExpectNothingDone() {
        EXPECT_EQ(ReadAll(source), original);
        EXPECT_FALSE(fs::exists(copy));
    }
    TempDir dir;
    std::string source = dir.File("AddressBookW.mdb");
    std::string copy = dir.File("Compressed.mdb");
    std::string original;
};

TEST_F(Compact, WritesACopyWithTheSameBookAndLeavesTheSource) {
    Engine().CompactDatabase(source, copy);
    EXPECT_EQ(ReadAll(source), original);
    Database db = Engine().OpenDatabase(copy);
    EXPECT_EQ(Rows(db, "PersonalData", "FullName"), "Иванов Иван,Smith,,Archive Person");
    EXPECT_EQ(Rows(db, "Resources", "Resource ID"), "1,2,3");
    EXPECT_EQ(db.TableDefs().Count(), 12);
    EXPECT_EQ(db.TableDefs()("PersonalData").Fields()("FirstName").Size(), 50);
    EXPECT_EQ(db.TableDefs()("Resources").Fields()("Resource ID").Attributes(), dao::dbAutoIncrField);
    EXPECT_EQ(db.QueryDefs()("PersPrj").SQL(), "Select * from Projects Where Projects.OwnerType=0;");
    EXPECT_EQ(Rows(db, "Select * From PersonalData Where FullName=\"ИВАНОВ ИВАН\"", "Personal ID"), "1");

    // Counters go on from the highest number left: the deleted 4 is free again.
    Recordset rs = db.OpenRecordset("Resources");
    rs.AddNew();
    EXPECT_EQ(rs("Resource ID"), Variant(4));
    rs.SetValue("ResourceString", "new");
    rs.Update();
    Recordset people = db.OpenRecordset("PersonalData");
    people.AddNew();
    EXPECT_EQ(people("Personal ID"), Variant(5));
    people.CancelUpdate();
    // The source, uncompacted, still would not give 4 again.
    Database old = Engine().OpenDatabase(source);
    Recordset oldRs = old.OpenRecordset("Resources");
    oldRs.AddNew();
    EXPECT_EQ(oldRs("Resource ID"), Variant(5));
}

TEST_F(Compact, RefusesAnExistingDestinationOrAMissingSource) {
    std::ofstream(copy) << "keep me";
    EXPECT_EQ(ErrorOf([&] { Engine().CompactDatabase(source, copy); }), 3204);
    EXPECT_EQ(ReadAll(copy), "keep me");
    EXPECT_EQ(ReadAll(source), original);
    fs::remove(copy);
    EXPECT_EQ(ErrorOf([&] { Engine().CompactDatabase(source, source); }), 3204);
    EXPECT_EQ(ErrorOf([&] { Engine().CompactDatabase(dir.File("none.mdb"), copy); }), 3024);
    EXPECT_EQ(ErrorOf([&] { Engine().CompactDatabase(source, dir.File("no/folder/x.mdb")); }), 3044);
    ExpectNothingDone();
}

TEST_F(Compact, RefusedWhileADatabaseOfThisProcessHoldsTheSource) {
    {
        Database open = Engine().OpenDatabase(source);
        EXPECT_EQ(ErrorOf([&] { Engine().CompactDatabase(source, copy); }), 3045);
        EXPECT_EQ(Rows(open, "Resources", "Resource ID"), "1,2,3");  // the holder goes on
    }
    ExpectNothingDone();
    {
        Database alone = Engine().OpenDatabase(source, true);
        EXPECT_EQ(ErrorOf([&] { Engine().CompactDatabase(source, copy); }), 3045);
        alone.Close();
    }
    ExpectNothingDone();
    Engine().CompactDatabase(source, copy);
    EXPECT_TRUE(fs::exists(copy));
}

TEST_F(Compact, RefusedWhileAnotherProcessHoldsTheSource) {
    {
        auto child = HoldInOtherProcess(source, false);
        ASSERT_EQ(child->error(), 0);
        EXPECT_EQ(ErrorOf([&] { Engine().CompactDatabase(source, copy); }), 3045);
    }
    ExpectNothingDone();
    Engine().CompactDatabase(source, copy);
    EXPECT_EQ(Rows(Engine().OpenDatabase(copy), "Resources", "Resource ID"), "1,2,3");
}

// A book's Version is the Jet format it stands for: "4.0" for every new book,
// "3.0" only when asked for; a compaction keeps it unless the options name
// one, and the mark survives the copy both ways.
TEST_F(Compact, VersionIsKeptOrSetByTheCompaction) {
    EXPECT_EQ(Engine().OpenDatabase(source).Version(), "4.0");
    const std::string old = dir.File("Old.mdb");
    Engine().CreateDatabase(old, {}, dao::dbVersion30).Close();
    EXPECT_EQ(Engine().OpenDatabase(old).Version(), "3.0");
    Engine().CreateDatabase(dir.File("Both.mdb"), {}, dao::dbVersion30 | dao::dbVersion40).Close();
    EXPECT_EQ(Engine().OpenDatabase(dir.File("Both.mdb")).Version(), "4.0");

    struct Case {
        std::string from;
        int options;
        const char* version;
    };
    for (const Case& c : {Case{old, 0, "3.0"}, Case{old, dao::dbVersion40, "4.0"}, Case{source, 0, "4.0"},
                          Case{source, dao::dbVersion30, "3.0"}}) {
        SCOPED_TRACE(c.from + " with " + std::to_string(c.options));
        fs::remove(copy);
        Engine().CompactDatabase(c.from, copy, {}, c.options);
        Database db = Engine().OpenDatabase(copy);
        EXPECT_EQ(db.Version(), c.version);
        db.Close();
    }
}

}  // namespace
}  // namespace zelvo::testing
