// Values as the book's queries meet them through the engine: Null, 0 and
// the empty text are three different things to SQL, `&` joins a Null as
// empty, Like has Jet's wildcards, and texts compare and sort without regard
// to case in every alphabet, in SQL and in FindFirst alike.
#include <gtest/gtest.h>

#include "dao_test_util.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using dao::Database;
using dao::Recordset;

class Values : public ::testing::Test {
protected:
    void SetUp() override {
        db = dao::Engine().CreateDatabase(dir.File("AddressBookW.mdb"));
        CreateBookSchema(db);
        // Persons: a Null, an empty and a filled middle name; organizations:
        // a Null, a 0 and a real parent.
        db.Execute("Insert Into PersonalData (FirstName, MiddleName, FullName) Values (\"Null\", Null, \"ИВАНОВ\")");
        db.Execute("Insert Into PersonalData (FirstName, MiddleName, FullName) Values (\"Empty\", \"\", \"иванов\")");
        db.Execute("Insert Into PersonalData (FirstName, MiddleName, FullName) Values (\"Filled\", \"M\", \"Ёлкин\")");
        db.Execute("Insert Into PersonalData (FirstName, MiddleName, FullName) Values (\"apple\", \"a1\", \"Émile\")");
        db.Execute("Insert Into PersonalData (FirstName, MiddleName, FullName) Values (\"Banana\", \"a_%\", \"ábc\")");
        db.Execute("Insert Into Organizations (Organization, [Parent ID]) Values (\"NullParent\", Null)");
        db.Execute("Insert Into Organizations (Organization, [Parent ID]) Values (\"ZeroParent\", 0)");
        db.Execute("Insert Into Organizations (Organization, [Parent ID]) Values (\"Child\", 1)");
    }
    std::string Names(const std::string& where) {
        return Rows(db, "Select * From PersonalData Where " + where + " Order By [Personal ID]", "FirstName");
    }
    TempDir dir;
    Database db;
};

TEST_F(Values, NullZeroAndEmptyAreApart) {
    EXPECT_EQ(Names("MiddleName = \"\""), "Empty");
    EXPECT_EQ(Names("MiddleName Is Null"), "Null");
    EXPECT_EQ(Names("MiddleName = \"\" Or MiddleName Is Null"), "Null,Empty");
    EXPECT_EQ(Names("Not (MiddleName = \"M\")"), "Empty,apple,Banana");  // Null is neither equal nor unequal
    EXPECT_EQ(Rows(db, "Select * From Organizations Where [Parent ID]=0", "Organization"), "ZeroParent");
    EXPECT_EQ(Rows(db, "Select * From Organizations Where [Parent ID]=0 Or [Parent ID] Is Null", "Organization"),
              "NullParent,ZeroParent");

    Recordset rs = db.OpenRecordset("Select * From PersonalData Order By [Personal ID]");
    EXPECT_TRUE(rs("MiddleName").IsNull());
    EXPECT_TRUE(rs("Comments").IsNull());
    rs.MoveNext();
    EXPECT_EQ(rs("MiddleName"), Variant(""));
    rs.FindFirst("[MiddleName]=\"\" or ([MiddleName] Is Null)");
    EXPECT_EQ(rs("FirstName").AsText(), "Null");
    rs.FindNext("[MiddleName]=\"\" or ([MiddleName] Is Null)");
    EXPECT_EQ(rs("FirstName").AsText(), "Empty");
    Recordset org = db.OpenRecordset("Organizations");
    EXPECT_TRUE(org("Parent ID").IsNull());
    org.MoveNext();
    EXPECT_EQ(org("Parent ID"), Variant(0));

    // Values written through a record set keep the difference too.
    rs.Edit();
    rs.SetValue("MiddleName", Variant());
    rs.Update();
    EXPECT_EQ(Names("MiddleName Is Null"), "Null,Empty");
}

TEST_F(Values, AmpersandJoinsANullAsEmpty) {
    Recordset rs = db.OpenRecordset(
        "Select FirstName & \" \" & MiddleName As Both, MiddleName & Comments As Nothing, [Personal ID] & \"\" As Id "
        "From PersonalData Order By [Personal ID]");
    EXPECT_EQ(rs("Both").AsText(), "Null ");
    EXPECT_TRUE(rs("Nothing").IsNull());  // Null & Null stays Null
    EXPECT_EQ(rs("Id"), Variant("1"));
    rs.MoveNext();
    EXPECT_EQ(rs("Nothing"), Variant(""));
    EXPECT_EQ(Names("FirstName & MiddleName = \"Null\""), "Null");
}

TEST_F(Values, LikeHasJetsWildcards) {
    EXPECT_EQ(Names("FirstName Like \"b*\""), "Banana");
    EXPECT_EQ(Names("FullName Like \"иван*\""), "Null,Empty");
    EXPECT_EQ(Names("FirstName Like \"?ull\""), "Null");
    EXPECT_EQ(Names("MiddleName Like \"a#\""), "apple");
    EXPECT_EQ(Names("FirstName Like \"[a-c]*\""), "apple,Banana");
    EXPECT_EQ(Names("FirstName Like \"[!a-e]*\""), "Null,Filled");
    EXPECT_EQ(Names("MiddleName Like \"a_%\""), "Banana");  // % and _ are plain characters here
    EXPECT_EQ(Names("MiddleName Like \"a%\""), "");
    EXPECT_EQ(Names("MiddleName Like \"*\""), "Empty,Filled,apple,Banana");  // Null matches nothing
    Recordset rs = db.OpenRecordset("PersonalData");
    rs.FindFirst("[FullName] Like \"ё*\"");
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs("FirstName").AsText(), "Filled");
}

TEST_F(Values, TextsCompareAndSortWithoutCaseInEveryAlphabet) {
    EXPECT_EQ(Names("FullName = \"иванов\""), "Null,Empty");
    EXPECT_EQ(Names("FullName = \"ИВАНОВ\""), "Null,Empty");
    EXPECT_EQ(Names("FullName = \"ёлкин\""), "Filled");
    EXPECT_EQ(Names("FullName = \"ЁЛКИН\""), "Filled");
    EXPECT_EQ(Names("FullName = \"émile\""), "apple");
    EXPECT_EQ(Names("FullName = \"emile\""), "");  // accents count
    EXPECT_EQ(Names("FullName < \"Иванов\""), "Filled,apple,Banana");  // Ё before И, Latin before both
    EXPECT_EQ(Rows(db, "Select * From PersonalData Where [Personal ID]>3 Order By FirstName", "FirstName"),
              "apple,Banana");
    EXPECT_EQ(Rows(db, "Select * From PersonalData Order By FullName desc", "FirstName"),
              "Null,Empty,Filled,apple,Banana");
    EXPECT_EQ(Rows(db, "Select Distinct FullName From PersonalData Where FullName Like \"и*\"", "FullName").size(),
              std::string("ИВАНОВ").size());  // one of the two spellings

    Recordset rs = db.OpenRecordset("Select * From PersonalData Order By [Personal ID]");
    rs.FindFirst("[FullName]=\"иванов\"");
    EXPECT_EQ(rs("FirstName").AsText(), "Null");
    rs.FindLast("[FullName]=\"ИВАНОВ\"");
    EXPECT_EQ(rs("FirstName").AsText(), "Empty");
    rs.FindFirst("[FirstName]=\"BANANA\"");
    EXPECT_EQ(rs("FullName").AsText(), "ábc");
    rs.FindFirst("[FullName]=\"ЁЛКИН\"");
    EXPECT_EQ(rs("FirstName").AsText(), "Filled");
    rs.FindFirst("[FullName]=\"elkin\"");
    EXPECT_TRUE(rs.NoMatch());
}

// A text given to a number field is taken only when it is a number as a
// whole, the same way for a field's value and its DefaultValue; a field
// appended with a DefaultValue leaves the rows already there Null.
TEST_F(Values, NumberFieldsTakeTextsThatAreNumbersAndRefuseTheRest) {
    Recordset rs = db.OpenRecordset("Organizations");
    rs.Edit();
    rs.SetValue("Parent ID", Variant("+5"));
    EXPECT_EQ(rs("Parent ID").AsInteger(), 5);
    rs.SetValue("Parent ID", Variant(" &H10 "));
    EXPECT_EQ(rs("Parent ID").AsInteger(), 16);
    for (const char* bad : {"1-2", "abc", "", "5 6"})
        EXPECT_EQ(ErrorOf([&] { rs.SetValue("Parent ID", Variant(bad)); }), 3421) << bad;
    rs.Update();
    EXPECT_EQ(Rows(db, "Select [Parent ID] From Organizations Where Organization = \"NullParent\"", "Parent ID"),
              "16");

    dao::TableDef t = db.TableDefs()("Organizations");
    dao::Field depth = t.CreateField("Depth", dao::dbLong);
    depth.SetDefaultValue("+3");
    t.Fields().Append(depth);
    EXPECT_EQ(Rows(db, "Select Count(*) As n From Organizations Where Depth Is Null", "n"), "3");  // as in Jet
    Recordset added = db.OpenRecordset("Organizations");
    added.AddNew();
    EXPECT_EQ(added("Depth").AsInteger(), 3);
    added.SetValue("Organization", Variant("New"));
    added.Update();
    EXPECT_EQ(Rows(db, "Select Depth From Organizations Where Organization = \"New\"", "Depth"), "3");
    db.Execute("Insert Into Organizations (Organization) Values (\"ByInsert\")");
    EXPECT_EQ(Rows(db, "Select Depth From Organizations Where Organization = \"ByInsert\"", "Depth"), "3");
}

}  // namespace
}  // namespace zelvo::testing
