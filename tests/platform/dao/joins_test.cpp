// Record sets over joins: field names bare where they are unique and
// "Table.Field" where two tables give the same one, and edits that go field
// by field to the table each field came from.
#include <gtest/gtest.h>

#include "dao_test_util.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using dao::Database;
using dao::Recordset;

class Joins : public ::testing::Test {
protected:
    void SetUp() override {
        db = CreateSampleBook(dir.File("AddressBookW.mdb"));
        db.Execute("Insert Into Employees ([Job ID], [Personal ID], [Room ID], Comments) Values (1, 2, 0, \"emp\")");
        db.Execute("Update PersonalData Set Comments=\"person\" Where [Personal ID]=2");
    }
    TempDir dir;
    Database db;
};

// A Select Distinct whose join field stands late in its list is made
// distinct on that field first (it is quicker to compare): the rows, their
// fields, names, types and order are those of the list as written.
TEST_F(Joins, DistinctOverAJoinKeepsItsListWhicheverFieldItComparesFirst) {
    Recordset rs = db.OpenRecordset(
        "Select Distinct PersonalData.FullName, PersonalData.[Personal ID], Projects.[Owner ID], Projects.InsArcPrj "
        "From PersonalData, Projects Where Projects.InsArcPrj=False And Projects.[Owner ID]=PersonalData.[Personal ID]");
    EXPECT_EQ(FieldNames(rs), "FullName,Personal ID,Owner ID,InsArcPrj");
    EXPECT_EQ(rs.Fields().Item("Personal ID").Type(), dao::dbLong);
    EXPECT_EQ(rs.Fields().Item("FullName").Type(), dao::dbText);
    EXPECT_EQ(rs.Fields().Item("InsArcPrj").Type(), dao::dbBoolean);
    // Person 1 is in two live projects, and stands once.
    EXPECT_EQ(Column(rs, "Personal ID"), "1,2");
    rs.MoveFirst();
    EXPECT_EQ(rs("FullName").AsText(), "Иванов Иван");
    EXPECT_EQ(rs("InsArcPrj"), Variant(false));
    EXPECT_EQ(ErrorOf([&] { rs.Edit(); }), 3027);
}

TEST_F(Joins, FieldsAreQualifiedOnlyWhereTheBareNameIsAmbiguous) {
    Recordset rs = db.OpenRecordset(
        "Select * From PersonalData, Employees Where PersonalData.[Personal ID]=Employees.[Personal ID]");
    EXPECT_EQ(FieldNames(rs), "FirstName,MiddleName,SurName,FullName,PersonalData.Comments,PersonalData.Personal ID,"
                         "Job ID,Employees.Personal ID,Room ID,Employees.Comments,Employee ID");
    EXPECT_EQ(rs("personaldata.comments").AsText(), "person");
    EXPECT_EQ(rs("Employees.Comments").AsText(), "emp");
    EXPECT_EQ(rs("employee id"), Variant(1));
    EXPECT_EQ(ErrorOf([&] { rs("Personal ID"); }), 3265);  // ambiguous
    EXPECT_EQ(ErrorOf([&] { rs("Comments"); }), 3265);

    Recordset named = db.OpenRecordset(
        "Select PersonalData.[Personal ID] As [Personal ID], PersonalData.Comments, Employees.[Job ID] From "
        "PersonalData Inner Join Employees On PersonalData.[Personal ID]=Employees.[Personal ID]");
    EXPECT_EQ(FieldNames(named), "Personal ID,Comments,Job ID");
    EXPECT_EQ(named("Personal ID"), Variant(2));
    EXPECT_EQ(named("Comments").AsText(), "person");
}

TEST_F(Joins, EditingAJoinWritesEachFieldToItsTable) {
    Recordset rs = db.OpenRecordset(
        "Select Resources.*, ResourcesOwners.[Owner ID], ResourcesOwners.OwnerType From ResourcesOwners Inner Join "
        "Resources On ResourcesOwners.[Resource ID] = Resources.[Resource ID] Where [Owner ID]=2");
    ASSERT_TRUE(rs.Updatable());
    rs.Edit();
    rs.SetValue("ResourceString", "smith@new.example");
    rs.SetValue("OwnerType", 4);
    rs.Update();
    EXPECT_EQ(rs("ResourceString").AsText(), "smith@new.example");
    EXPECT_EQ(Rows(db, "Select * From Resources Where [Resource ID]=3", "ResourceString"), "smith@new.example");
    EXPECT_EQ(Rows(db, "Select * From ResourcesOwners Where [Resource ID]=3", "OwnerType"), "4");
    EXPECT_EQ(Rows(db, "Select * From ResourcesOwners Where [Resource ID]=1", "OwnerType"), "0");

    // One field alone touches one table alone.
    rs.Edit();
    rs.SetValue("Owner ID", 1);
    rs.Update();
    EXPECT_EQ(Rows(db, "Select * From ResourcesOwners Where [Resource ID]=3", "Owner ID"), "1");
    EXPECT_EQ(Rows(db, "Select * From Resources Where [Resource ID]=3", "ResourceString"), "smith@new.example");
}

// A row of a join whose record in one table another connection deleted:
// Update fails with Jet's "Record is deleted." and writes neither table.
TEST_F(Joins, AnUpdateOfTwoTablesWritesBothOrNeither) {
    Recordset rs = db.OpenRecordset(
        "Select Resources.*, ResourcesOwners.OwnerType From ResourcesOwners Inner Join "
        "Resources On ResourcesOwners.[Resource ID] = Resources.[Resource ID] Where [Owner ID]=2");
    rs.Edit();
    rs.SetValue("OwnerType", 4);
    rs.SetValue("ResourceString", "smith@new.example");
    {
        Database other = dao::Engine().OpenDatabase(dir.File("AddressBookW.mdb"));
        other.Execute("Delete From Resources Where [Resource ID]=3");
    }
    EXPECT_EQ(Describe([&] { rs.Update(); }), "3167 Record is deleted.");
    EXPECT_EQ(Rows(db, "Select * From ResourcesOwners Where [Resource ID]=3", "OwnerType"), "0");
    rs.CancelUpdate();

    // A single table's row deleted elsewhere: the same number on Update.
    Recordset person = db.OpenRecordset("Select * From PersonalData Where [Personal ID]=2");
    person.Edit();
    person.SetValue("Comments", "late");
    db.Execute("Delete From PersonalData Where [Personal ID]=2");
    EXPECT_EQ(ErrorOf([&] { person.Update(); }), 3167);
}

// Jet fills in the blank: a field set on the Null side of an outer join
// makes the row there, with the join's key taken from the other side; so
// does a new row of the join.
TEST_F(Joins, WritingTheNullSideOfAnOuterJoinAddsTheRowThere) {
    const std::string join =
        "Select FullName, Employees.Comments, [Job ID] From PersonalData Left Join Employees "
        "On PersonalData.[Personal ID] = Employees.[Personal ID]";
    Recordset rs = db.OpenRecordset(join + " Where PersonalData.[Personal ID] = 1");
    EXPECT_TRUE(rs("Job ID").IsNull());
    rs.Edit();
    rs.SetValue("Comments", "joined");
    rs.SetValue("Job ID", 7);
    rs.Update();
    rs.Edit();
    rs.SetValue("Job ID", 8);  // the row made above, not another
    rs.Update();
    EXPECT_EQ(Rows(db, "Select * From Employees Where [Personal ID]=1", "Job ID"), "8");

    Recordset all = db.OpenRecordset(join);
    all.AddNew();
    all.SetValue("FullName", "Newcomer");
    all.SetValue("Job ID", 9);
    all.Update();
    EXPECT_EQ(Rows(db, "Select FullName From PersonalData Inner Join Employees On "
                       "PersonalData.[Personal ID] = Employees.[Personal ID] Where [Job ID] = 9",
                   "FullName"),
              "Newcomer");
}

TEST_F(Joins, FieldsOfTheSameNameInTwoTablesAreWrittenApart) {
    Recordset rs = db.OpenRecordset(
        "Select * From PersonalData Inner Join Employees On PersonalData.[Personal ID]=Employees.[Personal ID]");
    rs.Edit();
    rs.SetValue("Employees.Comments", "emp2");
    rs.Update();
    EXPECT_EQ(Rows(db, "Select * From Employees Where [Employee ID]=1", "Comments"), "emp2");
    EXPECT_EQ(Rows(db, "Select * From PersonalData Where [Personal ID]=2", "Comments"), "person");
    rs.Edit();
    rs.SetValue("PersonalData.Comments", "person2");
    rs.Update();
    EXPECT_EQ(Rows(db, "Select * From PersonalData Where [Personal ID]=2", "Comments"), "person2");
    EXPECT_EQ(Rows(db, "Select * From Employees Where [Employee ID]=1", "Comments"), "emp2");
}

TEST_F(Joins, CalculatedFieldsAreReadOnly) {
    Recordset rs = db.OpenRecordset("Select FullName, FirstName & \"!\" As Shout From PersonalData");
    rs.Edit();
    EXPECT_NE(ErrorOf([&] { rs.SetValue("Shout", "x"); }), 0);
    rs.SetValue("FullName", "Renamed");
    rs.Update();
    EXPECT_EQ(Rows(db, "Select * From PersonalData Where [Personal ID]=1", "FullName"), "Renamed");
}

}  // namespace
}  // namespace zelvo::testing
