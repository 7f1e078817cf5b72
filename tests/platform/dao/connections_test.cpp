// Two Database objects on one file, as the book's code opens them (the main
// list and the e-mail column, the card and the list): each sees the other's
// writes after Requery, a row changed under an edit is a conflict, and a
// writer that holds the file's lock makes the others wait and then fail.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "dao_test_util.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using dao::Database;
using dao::Engine;
using dao::Recordset;

class TwoConnections : public ::testing::Test {
protected:
    void SetUp() override {
        a = CreateSampleBook(path);
        b = Engine().OpenDatabase(path);
    }
    TempDir dir;
    std::string path = dir.File("AddressBookW.mdb");
    Database a, b;
};

TEST_F(TwoConnections, WritesOfOneAreSeenByTheOtherAfterRequery) {
    Recordset list = a.OpenRecordset("Select * From PersonalData Order By FullName");
    ASSERT_EQ(list("Personal ID"), Variant(3));  // a Null FullName sorts first
    b.Execute("Insert Into PersonalData (FirstName, FullName) Values (\"Adams\", \"Adams\")");
    b.Execute("Update PersonalData Set FullName = \"Smith, J.\" Where [Personal ID]=2");
    list.MoveLast();
    EXPECT_EQ(list.RecordCount(), 4);  // the open set is as it was read
    list.Requery();
    EXPECT_EQ(list("Personal ID"), Variant(3));
    list.MoveNext();
    EXPECT_EQ(list("FullName").AsText(), "Adams");
    EXPECT_EQ(list.RecordCount(), 2);
    list.MoveLast();
    EXPECT_EQ(list.RecordCount(), 5);
    EXPECT_EQ(Column(list, "Personal ID"), "3,5,4,2,1");
    EXPECT_EQ(Rows(a, "Select * From PersonalData Where [Personal ID]=2", "FullName"), "Smith, J.");

    // And back: a record set's own AddNew, Edit and Delete reach the other.
    Recordset people = b.OpenRecordset("PersonalData");
    people.AddNew();
    const auto id = people("Personal ID").AsInteger();
    EXPECT_EQ(id, 6);
    people.SetValue("FullName", "From B");
    people.Update();
    people.MoveFirst();
    people.Delete();
    list.Requery();
    EXPECT_EQ(Column(list, "Personal ID"), "3,5,4,6,2");
    EXPECT_EQ(Rows(a, "Select * From PersonalData Where [Personal ID]=6", "FullName"), "From B");
}

TEST_F(TwoConnections, CountersOfBothGoOnFromOneAnother) {
    Recordset ra = a.OpenRecordset("Resources");
    Recordset rb = b.OpenRecordset("Resources");
    ra.AddNew();
    rb.AddNew();
    EXPECT_EQ(ra("Resource ID").AsInteger(), 5);
    EXPECT_EQ(rb("Resource ID").AsInteger(), 6);  // no number is given twice
    rb.SetValue("ResourceString", "b");
    rb.Update();
    ra.SetValue("ResourceString", "a");
    ra.Update();
    EXPECT_EQ(Rows(b, "Select * From Resources Where [Resource ID]>4", "ResourceString"), "a,b");
}

TEST_F(TwoConnections, ARowChangedSinceItWasReadIsAConflict) {
    Recordset ra = a.OpenRecordset("Select * From PersonalData Where [Personal ID]=2");
    Recordset rb = b.OpenRecordset("Select * From PersonalData Where [Personal ID]=2");
    rb.Edit();
    rb.SetValue("FullName", "Changed by B");
    rb.Update();
    ra.Edit();
    ra.SetValue("FullName", "Changed by A");
    try {
        ra.Update();
        ADD_FAILURE() << "Update over another's change";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 3197);
        EXPECT_EQ(e.description(),
                  "The Microsoft Jet database engine stopped the process because you and another user are "
                  "attempting to change the same data at the same time.");
    }
    EXPECT_EQ(Rows(a, "Select * From PersonalData Where [Personal ID]=2", "FullName"), "Changed by B");
    // Another field of the row, not touched by B, can still be written.
    ra.Requery();
    ra.Edit();
    ra.SetValue("Comments", "seen");
    ra.Update();
    EXPECT_EQ(Rows(b, "Select * From PersonalData Where [Personal ID]=2", "Comments"), "seen");
}

TEST_F(TwoConnections, AWriterHoldingTheLockMakesOthersFail) {
    Engine().SetLockTimeout(50);
    Database c = Engine().OpenDatabase(path);
    Engine().SetLockTimeout(2000);
    Recordset rs = c.OpenRecordset("PersonalData");

    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &raw), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(raw, "BEGIN IMMEDIATE; DELETE FROM Projects;", nullptr, nullptr, nullptr), SQLITE_OK);

    EXPECT_EQ(Describe([&] { c.Execute("Update PersonalData Set Comments=\"x\""); }),
              "3218 Could not update; currently locked.");
    char host[256] = {};
    gethostname(host, sizeof host - 1);
    try {
        rs.Edit();
        ADD_FAILURE() << "Edit while another holds the lock";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 3260);
        EXPECT_EQ(e.description(), std::string("Could not update; currently locked by user 'Admin' on machine '") +
                                       host + "'.");
    }
    EXPECT_EQ(ErrorOf([&] { rs.AddNew(); }), 3218);
    // Reading goes on, and sees nothing of the unfinished change.
    EXPECT_EQ(Rows(c, "Select * From Projects Where [Owner ID]=1", "Project"), "A,A\\B");

    sqlite3_exec(raw, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(raw);
    rs.Requery();
    rs.Edit();
    rs.SetValue("Comments", "after");
    rs.Update();
    c.Execute("Update PersonalData Set Comments=\"all\"");
    EXPECT_EQ(c.RecordsAffected(), 4);
}

TEST_F(TwoConnections, RecordCountCountsWhatWasReached) {
    Recordset rs = a.OpenRecordset("PersonalData");
    EXPECT_EQ(rs.RecordCount(), 1);
    rs.MoveNext();
    EXPECT_EQ(rs.RecordCount(), 2);
    rs.MoveLast();
    EXPECT_EQ(rs.RecordCount(), 4);
    rs.MoveFirst();
    EXPECT_EQ(rs.RecordCount(), 4);
    rs.Delete();
    EXPECT_EQ(rs.RecordCount(), 3);
    rs.AddNew();
    rs.SetValue("FullName", "x");
    rs.Update();
    EXPECT_EQ(rs.RecordCount(), 4);
    rs.Requery();
    EXPECT_EQ(rs.RecordCount(), 1);
    rs.MoveLast();
    EXPECT_EQ(rs.RecordCount(), 4);
    EXPECT_EQ(a.OpenRecordset("Select * From PersonalData Where FullName=\"nobody\"").RecordCount(), 0);
}

}  // namespace
}  // namespace zelvo::testing
