// The record idioms the book's code is written in: the test for a row, the
// walk from the last row to the first, finding, adding, editing, deleting.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "support/book_fixture.h"
#include "dao_test_util.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using dao::Database;
using dao::Recordset;

class RecordsetTest : public SampleBookTest {};

TEST_F(RecordsetTest, EmptySetHasNoCurrentRecordAndRefusesEveryMove) {
    Recordset rs = db.OpenRecordset("Select * From PersonalData Where FirstName = \"nobody at all\"");
    EXPECT_EQ(Cursor(rs), "pos=-1 bof=1 eof=1");
    EXPECT_EQ(rs.RecordCount(), 0);
    EXPECT_EQ(ErrorOf([&] { rs.MoveLast(); }), 3021);
    EXPECT_EQ(ErrorOf([&] { rs.MoveFirst(); }), 3021);
    EXPECT_EQ(ErrorOf([&] { rs.MoveNext(); }), 3021);
    EXPECT_EQ(ErrorOf([&] { rs("FirstName"); }), 3021);
}

TEST_F(RecordsetTest, TheWalkFromLastToFirstSeesEveryRowOnce) {
    Recordset rs = db.OpenRecordset("PersonalData", dao::dbOpenDynaset);
    ASSERT_NE(rs.AbsolutePosition(), -1);
    EXPECT_EQ(rs.RecordCount(), 1);  // only the first record has been reached
    rs.MoveLast();
    const auto n = rs.RecordCount();
    ASSERT_EQ(n, 4);
    std::string seen;
    for (std::int64_t i = 1; i <= n; ++i) {
        seen += rs("Personal ID").AsText();
        if (i < n) rs.MovePrevious();
    }
    EXPECT_EQ(seen, "4321");
    EXPECT_EQ(Cursor(rs), "pos=0 bof=0 eof=0");
}

TEST_F(RecordsetTest, MovesPastTheEndsSetBofAndEofThenFail) {
    Recordset rs = db.OpenRecordset("Select * From PersonalData Where [Personal ID] = 2");
    EXPECT_EQ(Cursor(rs), "pos=0 bof=0 eof=0");
    rs.MoveNext();
    EXPECT_EQ(Cursor(rs), "pos=-1 bof=0 eof=1");
    EXPECT_EQ(ErrorOf([&] { rs.MoveNext(); }), 3021);
    rs.MovePrevious();
    EXPECT_EQ(rs("FullName").AsText(), "Smith");
    rs.MovePrevious();
    EXPECT_EQ(Cursor(rs), "pos=-1 bof=1 eof=0");
    EXPECT_EQ(ErrorOf([&] { rs.MovePrevious(); }), 3021);
}

// Positions and the count pass over deleted rows, however many there are
// and wherever they stand.
TEST_F(RecordsetTest, AbsolutePositionAndRecordCountPassOverDeletedRows) {
    Recordset rs = db.OpenRecordset("PersonalData");
    rs.SetAbsolutePosition(2);
    EXPECT_EQ(rs("Personal ID").AsInteger(), 3);
    EXPECT_EQ(ErrorOf([&] { rs.SetAbsolutePosition(10); }), 3001);
    for (int i = 0; i < 6; ++i) {
        rs.AddNew();
        rs.SetValue("FullName", "n" + std::to_string(i));
        rs.Update();
    }
    rs.MoveFirst();
    rs.MoveNext();
    rs.Delete();  // person 2
    rs.SetAbsolutePosition(4);
    EXPECT_EQ(rs("FullName").AsText(), "n1");
    rs.Delete();
    rs.MoveNext();
    rs.Delete();  // n1 and n2: now 1,3,4,n0,n3,n4,n5
    rs.MoveLast();
    EXPECT_EQ(rs.RecordCount(), 7);
    EXPECT_EQ(rs.AbsolutePosition(), 6);
    std::string seen;
    for (int p = 0; p < 7; ++p) {
        rs.SetAbsolutePosition(p);
        EXPECT_EQ(rs.AbsolutePosition(), p);
        seen += rs("FullName").AsText() + ",";
    }
    EXPECT_EQ(seen, "Иванов Иван,,Archive Person,n0,n3,n4,n5,");
    EXPECT_EQ(ErrorOf([&] { rs.SetAbsolutePosition(7); }), 3001);
}

TEST_F(RecordsetTest, FieldsAreFoundByNameWithoutRegardToCase) {
    Recordset rs = db.OpenRecordset("PersonalData");
    EXPECT_EQ(rs("surname").AsText(), "Иванович");
    EXPECT_EQ(rs("SURNAME").AsText(), rs("SurName").AsText());
    EXPECT_EQ(rs.Fields().Item("personal id").Name(), "Personal ID");
    EXPECT_EQ(ErrorOf([&] { rs("NoSuchField"); }), 3265);
    EXPECT_EQ(rs.Fields().Count(), 6);
}

// A loop reads a row's fields by name in the same order row after row;
// whatever order and spelling the names come in, each name finds the first
// field of that name, also where two fields share a name.
TEST_F(RecordsetTest, FieldsReadByNameInAnyOrderFindTheFirstFieldOfThatName) {
    Recordset rs = db.OpenRecordset(
        "Select FirstName As Имя, SurName As имя, FirstName As A, FullName As a, FullName From PersonalData "
        "Where [Personal ID]=1");
    const std::vector<std::pair<const char*, const char*>> reads = {
        {"Имя", "Иванов"}, {"имя", "Иванов"}, {"A", "Иванов"}, {"a", "Иванов"},
        {"FULLNAME", "Иванов Иван"}, {"a", "Иванов"}, {"FullName", "Иванов Иван"}, {"ИМЯ", "Иванов"},
    };
    for (int pass = 0; pass < 2; ++pass)
        for (const auto& [name, value] : reads) EXPECT_EQ(rs(name).AsText(), value) << name;
    // A field found before the set is opened again on other fields.
    Recordset other = db.OpenRecordset("Select SurName, FirstName From PersonalData Where [Personal ID]=1");
    EXPECT_EQ(other("FirstName").AsText(), "Иванов");
    EXPECT_EQ(other("SurName").AsText(), "Иванович");
    EXPECT_EQ(other("FirstName").AsText(), "Иванов");
    EXPECT_EQ(ErrorOf([&] { other("FullName"); }), 3265);
}

TEST_F(RecordsetTest, NullReadsAsNullAndTypesFollowTheColumns) {
    Recordset rs = db.OpenRecordset("Select * From PersonalData Where [Personal ID]=3");
    EXPECT_TRUE(rs("FullName").IsNull());
    EXPECT_EQ(rs("Personal ID").kind(), Variant::Kind::Integer);
    Recordset p = db.OpenRecordset("Projects");
    EXPECT_EQ(p("InsArcPrj").kind(), Variant::Kind::Boolean);
    EXPECT_EQ(p("InsArcPrj"), Variant(false));
}

TEST_F(RecordsetTest, FindFirstNextLastPreviousWithJetCriteria) {
    Recordset rs = db.OpenRecordset("Projects");
    rs.MoveFirst();
    rs.FindFirst("[Owner ID]=1 and [Project] Like \"a*\"");
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs("Project").AsText(), "A");
    rs.FindNext("[Owner ID]=1");
    EXPECT_EQ(rs("Project").AsText(), "A\\B");
    rs.FindNext("[Owner ID]=1");
    EXPECT_TRUE(rs.NoMatch());
    EXPECT_EQ(rs("Project").AsText(), "A\\B");  // no match leaves the cursor where it was
    rs.FindLast("[OwnerType]=0");
    EXPECT_EQ(rs("Project").AsText(), "Old");
    rs.FindPrevious("[InsArcPrj]=False");
    EXPECT_EQ(rs("Project").AsText(), "AB");
    EXPECT_EQ(rs.AbsolutePosition(), 2);
}

TEST_F(RecordsetTest, FindFirstComparesTextsWithoutCaseInAnyAlphabet) {
    Recordset rs = db.OpenRecordset("PersonalData");
    rs.FindFirst("[FirstName]=\"ИВАНОВ\"");
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs("Personal ID").AsInteger(), 1);
    rs.FindFirst("[FullName]=\"smith\" And [Personal ID]=2");
    EXPECT_FALSE(rs.NoMatch());
    rs.FindFirst("[FullName]=\"Smyth\"");
    EXPECT_TRUE(rs.NoMatch());
}

TEST_F(RecordsetTest, FindFirstThenWalkingOnFindsItsPlace) {
    Recordset rs = db.OpenRecordset("PersonalData");
    rs.FindFirst("[Personal ID]=3");
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs("FirstName").AsText(), "Nobody");
    EXPECT_EQ(rs.AbsolutePosition(), 2);
    rs.MoveNext();
    EXPECT_EQ(rs("Personal ID").AsInteger(), 4);
}

TEST_F(RecordsetTest, AddNewNumbersTheRowAtOnceAndReturnsToTheRecordBefore) {
    Recordset rs = db.OpenRecordset("PersonalData");
    rs.MoveFirst();
    rs.MoveNext();  // on person 2
    rs.AddNew();
    const Variant id = rs("Personal ID");
    EXPECT_EQ(id, Variant(5));
    rs.SetValue("FullName", "New Person");
    rs.Update();
    EXPECT_EQ(rs("Personal ID").AsInteger(), 2);  // the record current before AddNew
    rs.MoveLast();
    EXPECT_EQ(rs("FullName").AsText(), "New Person");  // the new row stands last
    EXPECT_EQ(rs.RecordCount(), 5);
    EXPECT_EQ(Rows(db, "Select * From PersonalData Where [Personal ID]=5", "FullName"), "New Person");
}

TEST_F(RecordsetTest, AddNewFillsDefaultsAndCancelledNumbersAreNotGivenAgain) {
    Recordset rs = db.OpenRecordset("Resources");
    rs.AddNew();
    EXPECT_EQ(rs("ResourceType"), Variant(0));
    const auto first = rs("Resource ID").AsInteger();
    rs.CancelUpdate();
    rs.AddNew();
    EXPECT_EQ(rs("Resource ID").AsInteger(), first + 1);
    rs.SetValue("ResourceString", "x@y.z");
    rs.Update();
    EXPECT_EQ(Rows(db, "Select * From Resources Where ResourceString=\"x@y.z\"", "Resource ID"),
              std::to_string(first + 1));
}

TEST_F(RecordsetTest, AddNewOnAnEmptySetLeavesEofAndTheNewRowBehind) {
    Recordset rs = db.OpenRecordset("Select * From Resources Where ResourceType=4");
    rs.AddNew();
    rs.SetValue("ResourceString", "12345");
    rs.SetValue("ResourceType", 4);
    rs.Update();
    EXPECT_FALSE(rs.IsBOF());
    EXPECT_TRUE(rs.IsEOF());
    rs.MovePrevious();
    EXPECT_EQ(rs("ResourceString").AsText(), "12345");
}

TEST_F(RecordsetTest, EditUpdatesTheRowAndUpdateWithoutEditIsRefused) {
    Recordset rs = db.OpenRecordset("PersonalData");
    EXPECT_EQ(ErrorOf([&] { rs.Update(); }), 3020);
    EXPECT_EQ(ErrorOf([&] { rs.SetValue("FullName", "x"); }), 3020);
    rs.Edit();
    rs.SetValue("FullName", "Иванов И.И.");
    EXPECT_EQ(rs("FullName").AsText(), "Иванов И.И.");
    rs.Update();
    EXPECT_EQ(rs("FullName").AsText(), "Иванов И.И.");
    EXPECT_EQ(Rows(db, "Select * From PersonalData Where [Personal ID]=1", "FullName"), "Иванов И.И.");
    rs.Edit();
    rs.SetValue("FullName", "dropped");
    rs.CancelUpdate();
    EXPECT_EQ(rs("FullName").AsText(), "Иванов И.И.");
}

TEST_F(RecordsetTest, MovingAwayDuringEditDiscardsIt) {
    Recordset rs = db.OpenRecordset("PersonalData");
    rs.Edit();
    rs.SetValue("FullName", "never saved");
    rs.MoveNext();
    rs.MoveFirst();
    EXPECT_EQ(rs("FullName").AsText(), "Иванов Иван");
}

TEST_F(RecordsetTest, DeleteLeavesTheDeletedRecordCurrentAndTheWalkGoesOn) {
    Recordset rs = db.OpenRecordset("PersonalData");
    rs.MoveLast();
    rs.MovePrevious();  // on person 3
    rs.Delete();
    EXPECT_EQ(ErrorOf([&] { rs("FullName"); }), 3167);
    EXPECT_FALSE(rs.IsEOF());
    rs.MovePrevious();
    EXPECT_EQ(rs("Personal ID").AsInteger(), 2);
    rs.MoveNext();
    EXPECT_EQ(rs("Personal ID").AsInteger(), 4);  // the deleted one is passed over
    rs.MoveLast();
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_EQ(Rows(db, "PersonalData", "Personal ID"), "1,2,4");
}

TEST_F(RecordsetTest, DeletingEveryRowFromTheLastWalksBackToBof) {
    // The removal walk of the book's code: Delete, then MovePrevious.
    Recordset rs = db.OpenRecordset("Select * From ResourcesOwners Where [Owner ID]=1");
    rs.MoveLast();
    while (!rs.IsBOF()) {
        rs.Delete();
        rs.MovePrevious();
    }
    rs.Requery();
    EXPECT_EQ(rs.AbsolutePosition(), -1);
    EXPECT_EQ(Rows(db, "ResourcesOwners", "Owner ID"), "2");
}

TEST_F(RecordsetTest, TextTooLongForItsColumnIsRefusedOnAssignmentAndInSql) {
    Recordset rs = db.OpenRecordset("PersonalData");
    rs.Edit();
    EXPECT_EQ(ErrorOf([&] { rs.SetValue("FirstName", std::string(51, 'x')); }), 3163);
    rs.SetValue("FirstName", std::string(50, 'x'));  // exactly 50 characters fits
    rs.SetValue("MiddleName", "Ж" + std::string(49, 'y'));  // characters, not bytes
    rs.Update();
    EXPECT_EQ(ErrorOf([&] { db.Execute("Update PersonalData Set FirstName=\"" + std::string(60, 'z') + "\""); }), 3163);
}

TEST_F(RecordsetTest, ClosedObjectsAreInvalid) {
    Recordset rs = db.OpenRecordset("PersonalData");
    rs.Close();
    EXPECT_EQ(ErrorOf([&] { rs.MoveNext(); }), 3420);
    Recordset other = db.OpenRecordset("PersonalData");
    db.Close();
    EXPECT_EQ(ErrorOf([&] { other.MoveNext(); }), 3420);
    EXPECT_EQ(ErrorOf([&] { db.OpenRecordset("PersonalData"); }), 3420);
}

}  // namespace
}  // namespace zelvo::testing
