// Table and query definitions as the book's schema check uses them: fields
// made by CreateField and their properties kept in the file, tables and
// fields renamed by setting Name, a Counter added to a table that has rows,
// Jet's DDL, and saved queries that keep their Jet text.
#include <gtest/gtest.h>

#include <set>

#include "dao_test_util.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using dao::Database;
using dao::Engine;
using dao::Field;
using dao::Recordset;
using dao::TableDef;

// A field's properties in one line: "type size attributes default required zero-length".
std::string Props(const Field& f) {
    return std::to_string(f.Type()) + " " + std::to_string(f.Size()) + " " + std::to_string(f.Attributes()) + " [" +
           f.DefaultValue() + "] " + (f.Required() ? "req" : "opt") + " " + (f.AllowZeroLength() ? "zls" : "nozls");
}

class Schema : public ::testing::Test {
protected:
    void SetUp() override { db = Engine().CreateDatabase(path); }
    Database Reopen() {
        db.Close();
        db = Engine().OpenDatabase(path);
        return db;
    }
    TempDir dir;
    std::string path = dir.File("AddressBookW.mdb");
    Database db;
};

TEST_F(Schema, FieldsAndTheirPropertiesAreKeptInTheFile) {
    TableDef t = db.CreateTableDef("Things");
    Field name = t.CreateField("Name", dao::dbText, 40);
    name.SetRequired(true);
    name.SetAllowZeroLength(true);
    name.SetDefaultValue("\"none\"");
    t.Fields().Append(name);
    t.Fields().Append(t.CreateField("Kind", dao::dbLong));
    Field flag = t.CreateField("Flag", dao::dbBoolean);
    flag.SetDefaultValue("True");
    t.Fields().Append(flag);
    t.Fields().Append(t.CreateField("Blob", dao::dbLongBinary));
    t.Fields().Append(t.CreateField("Note", dao::dbText));  // Text without a size: 255
    Field id = t.CreateField("ID", dao::dbLong);
    id.SetAttributes(dao::dbAutoIncrField);
    t.Fields().Append(id);
    EXPECT_EQ(ErrorOf([&] { t.Fields().Append(t.CreateField("kind", dao::dbLong)); }), 3191);
    db.TableDefs().Append(t);
    EXPECT_EQ(Props(name), "10 40 0 [\"none\"] req zls");  // the appended field still answers

    Reopen();
    TableDef back = db.TableDefs()("things");
    EXPECT_EQ(back.Name(), "Things");
    EXPECT_EQ(FieldNames(back), "Name,Kind,Flag,Blob,Note,ID");
    EXPECT_EQ(Props(back.Fields()("Name")), "10 40 0 [\"none\"] req zls");
    EXPECT_EQ(Props(back.Fields()("Kind")), "4 4 0 [] opt nozls");
    EXPECT_EQ(Props(back.Fields()("Flag")), "1 1 0 [True] opt nozls");
    EXPECT_EQ(Props(back.Fields()("Blob")), "11 0 0 [] opt nozls");
    EXPECT_EQ(Props(back.Fields()("Note")), "10 255 0 [] opt nozls");
    EXPECT_EQ(Props(back.Fields()("ID")), "4 4 16 [] opt nozls");

    // Defaults fill a new row; the Counter numbers it.
    Recordset rs = db.OpenRecordset("Things");
    rs.AddNew();
    EXPECT_EQ(rs("Name"), Variant("none"));
    EXPECT_EQ(rs("Flag"), Variant(true));
    EXPECT_EQ(rs("ID"), Variant(1));
    rs.SetValue("Blob", Variant(Bytes{0, 1, 2, 255}));
    rs.Update();
    rs.MoveLast();
    EXPECT_EQ(rs("Blob"), Variant(Bytes{0, 1, 2, 255}));
    EXPECT_EQ(rs.Fields()("Name").Size(), 40);
    db.Execute("Insert Into Things (Kind) Values (7)");
    EXPECT_EQ(Rows(db, "Select * From Things Where Kind=7", "Name"), "none");
    EXPECT_EQ(Rows(db, "Select * From Things Where Kind=7", "Flag"), "True");
}

TEST_F(Schema, ChangingFieldsOfATableWithRowsKeepsTheRows) {
    CreateBookSchema(db);
    db.Execute("Insert Into Projects ([Owner ID], Project) Values (1, \"A\")");
    db.Execute("Insert Into Projects ([Owner ID], Project) Values (2, \"B\")");
    TableDef t = db.TableDefs()("Projects");
    Field extra = t.CreateField("Extra", dao::dbText, 10);
    extra.SetDefaultValue("\"x\"");
    t.Fields().Append(extra);
    EXPECT_EQ(FieldNames(t), "Owner ID,OwnerType,Project,InsArcPrj,Extra");
    EXPECT_EQ(Rows(db, "Projects", "Project"), "A,B");

    // Setting properties of a field in the file changes the column.
    Field project = t.Fields()("Project");
    project.SetAllowZeroLength(true);
    project.SetSize(100);
    project.SetRequired(true);
    db.Execute("Insert Into Projects ([Owner ID], Project) Values (3, \"\")");
    EXPECT_EQ(ErrorOf([&] { db.Execute("Insert Into Projects ([Owner ID]) Values (4)"); }), 3314);
    EXPECT_EQ(ErrorOf([&] { db.Execute("Insert Into Projects (Project) Values (\"" + std::string(101, 'p') + "\")"); }),
              3163);
    t.Fields().Delete("extra");
    EXPECT_EQ(FieldNames(t), "Owner ID,OwnerType,Project,InsArcPrj");

    Reopen();
    TableDef back = db.TableDefs()("Projects");
    EXPECT_EQ(Props(back.Fields()("Project")), "10 100 0 [] req zls");
    EXPECT_EQ(Props(back.Fields()("OwnerType")), "4 4 0 [0] opt nozls");
    EXPECT_EQ(Rows(db, "Select * From Projects Order By [Owner ID]", "Project"), "A,B,");
    // The book's own check: a column of another type is not replaced, and stays.
    EXPECT_EQ(ErrorOf([&] { back.Fields().Append(back.CreateField("Project", dao::dbLong)); }), 3191);
    EXPECT_EQ(back.Fields()("Project").Type(), dao::dbText);
    EXPECT_EQ(ErrorOf([&] { back.Fields().Delete("Nothing"); }), 3265);
}

TEST_F(Schema, RenamingATableAndAFieldBySettingName) {
    // The oldest layout's table of e-mail addresses becomes Resources.
    TableDef old = db.CreateTableDef("E-MailAdresses");
    old.Fields().Append(old.CreateField("E-mailAdress", dao::dbText, 255));
    old.Fields().Append(old.CreateField("Personal ID", dao::dbLong));
    db.TableDefs().Append(old);
    db.Execute("Insert Into [E-MailAdresses] ([E-mailAdress], [Personal ID]) Values (\"a@b.c\", 1)");

    TableDef t = db.TableDefs()("E-MailAdresses");
    t.SetName("Resources");
    t.Fields()("E-mailAdress").SetName("ResourceString");
    EXPECT_EQ(ErrorOf([&] { db.TableDefs()("E-MailAdresses"); }), 3265);
    EXPECT_EQ(ErrorOf([&] { t.Fields()("Personal ID").SetName("resourcestring"); }), 3191);
    EXPECT_EQ(Rows(db, "Select ResourceString From Resources", "ResourceString"), "a@b.c");
    EXPECT_EQ(ErrorOf([&] { db.OpenRecordset("Select [E-mailAdress] From Resources"); }), 3061);

    TableDef other = db.CreateTableDef("Other");
    other.Fields().Append(other.CreateField("x", dao::dbLong));
    db.TableDefs().Append(other);
    EXPECT_EQ(ErrorOf([&] { other.SetName("resources"); }), 3010);

    Reopen();
    TableDef back = db.TableDefs()("Resources");
    EXPECT_EQ(FieldNames(back), "ResourceString,Personal ID");
    EXPECT_EQ(Props(back.Fields()("ResourceString")), "10 255 0 [] opt nozls");
    back.Fields().Delete("Personal ID");
    EXPECT_EQ(Rows(db, "Resources", "ResourceString"), "a@b.c");
}

TEST_F(Schema, ACounterAddedToATableWithRowsNumbersThemAndGoesOn) {
    TableDef t = db.CreateTableDef("Rooms");
    t.Fields().Append(t.CreateField("RoomName", dao::dbText, 255));
    db.TableDefs().Append(t);
    for (const char* room : {"one", "two", "three", "four"})
        db.Execute(std::string("Insert Into Rooms (RoomName) Values (\"") + room + "\")");
    db.Execute("Delete From Rooms Where RoomName=\"two\"");
    db.Execute("Alter Table Rooms Add Column [Room ID] Counter");

    EXPECT_EQ(Rows(db, "Rooms", "Room ID"), "1,2,3");
    EXPECT_EQ(Rows(db, "Rooms", "RoomName"), "one,three,four");
    EXPECT_EQ(Props(db.TableDefs()("Rooms").Fields()("Room ID")), "4 4 16 [] opt nozls");
    Recordset rs = db.OpenRecordset("Rooms");
    rs.AddNew();
    EXPECT_EQ(rs("Room ID"), Variant(4));
    rs.SetValue("RoomName", "five");
    rs.Update();
    db.Execute("Delete From Rooms Where [Room ID]=4");
    db.Execute("Insert Into Rooms (RoomName) Values (\"six\")");
    EXPECT_EQ(Rows(db, "Rooms", "Room ID"), "1,2,3,5");  // a number is never given twice
    EXPECT_EQ(ErrorOf([&] { db.Execute("Alter Table Rooms Add Column [Other ID] Counter"); }), 3090);

    Reopen();
    db.Execute("Insert Into Rooms (RoomName) Values (\"seven\")");
    EXPECT_EQ(Rows(db, "Select * From Rooms Where RoomName=\"seven\"", "Room ID"), "6");
}

TEST_F(Schema, CreateAndDropTableWithJetTypeNames) {
    db.Execute("Create Table [Jet Types] ([Name] Text(20), [N] Long, [Flag] YesNo, [Pic] LongBinary, "
               "[Note] Text, [ID] Counter)");
    TableDef t = db.TableDefs()("Jet Types");
    EXPECT_EQ(Props(t.Fields()("Name")), "10 20 0 [] opt zls");
    EXPECT_EQ(Props(t.Fields()("N")), "4 4 0 [] opt nozls");
    EXPECT_EQ(Props(t.Fields()("Flag")), "1 1 0 [] opt nozls");
    EXPECT_EQ(Props(t.Fields()("Pic")), "11 0 0 [] opt nozls");
    EXPECT_EQ(Props(t.Fields()("Note")), "10 255 0 [] opt zls");
    EXPECT_EQ(Props(t.Fields()("ID")), "4 4 16 [] opt nozls");

    db.Execute("Insert Into [Jet Types] (Name, N, Flag) Values (\"a\", 5, True)");
    db.Execute("Insert Into [Jet Types] (Name, N, Flag) Values (\"b\", -5, False)");
    Recordset rs = db.OpenRecordset("Select * From [Jet Types] Where Flag=True");
    EXPECT_EQ(rs("Flag"), Variant(true));
    EXPECT_EQ(rs("ID"), Variant(1));
    EXPECT_EQ(Rows(db, "Select * From [Jet Types] Where Flag=False And N<0", "Name"), "b");
    EXPECT_EQ(Rows(db, "Select * From [Jet Types] Where Flag=-1", "Name"), "a");
    rs.Close();

    db.Execute("Alter Table [Jet Types] Drop Column Note");
    EXPECT_EQ(FieldNames(db.TableDefs()("Jet Types")), "Name,N,Flag,Pic,ID");
    db.Execute("Drop Table [Jet Types]");
    EXPECT_EQ(ErrorOf([&] { db.TableDefs()("Jet Types"); }), 3265);
    EXPECT_NE(ErrorOf([&] { db.Execute("Drop Table [Jet Types]"); }), 0);
    Reopen();
    EXPECT_EQ(db.TableDefs().Count(), 0);
}

TEST_F(Schema, ARecordSetRequeriedAfterItsTableChangedEditsTheRightRows) {
    CreateBookSchema(db);
    for (int owner = 1; owner <= 3; ++owner)
        db.Execute("Insert Into Projects ([Owner ID], Project) Values (" + std::to_string(owner) + ", \"P" +
                   std::to_string(owner) + "\")");
    Recordset rs = db.OpenRecordset("Projects");
    TableDef t = db.TableDefs()("Projects");
    Field level = t.CreateField("Level", dao::dbLong);
    level.SetDefaultValue("1");
    t.Fields().Append(level);
    rs.Requery();
    EXPECT_EQ(rs.Fields().Count(), 5);
    rs.MoveLast();
    EXPECT_EQ(rs("Project").AsText(), "P3");
    rs.Edit();
    rs.SetValue("Project", "changed");
    rs.Update();
    EXPECT_EQ(Rows(db, "Projects", "Project"), "P1,P2,changed");

    // Fields read by name before the change are found anew after it.
    EXPECT_EQ(rs("OwnerType").AsInteger(), 0);
    EXPECT_TRUE(rs("Level").IsNull());  // a new field's default is for new rows
    t.Fields().Delete("OwnerType");
    rs.Requery();
    EXPECT_EQ(ErrorOf([&] { rs("OwnerType"); }), 3265);
    rs.MoveLast();
    EXPECT_TRUE(rs("Level").IsNull());
    EXPECT_EQ(rs("Project").AsText(), "changed");
    rs.MoveFirst();
    rs.Delete();
    EXPECT_EQ(Rows(db, "Projects", "Project"), "P2,changed");
}

TEST_F(Schema, RowsKeepTheirPlaceForOpenSetsWhenATableIsRebuilt) {
    CreateBookSchema(db);
    for (int owner = 1; owner <= 4; ++owner)
        db.Execute("Insert Into Projects ([Owner ID], Project) Values (" + std::to_string(owner) + ", \"P\")");
    db.Execute("Delete From Projects Where [Owner ID]=1");
    Recordset rs = db.OpenRecordset("Projects");
    Database other = Engine().OpenDatabase(path);
    Recordset elsewhere = other.OpenRecordset("Projects");
    elsewhere.MoveLast();
    TableDef t = db.TableDefs()("Projects");
    t.Fields().Append(t.CreateField("Level", dao::dbLong));  // the table is made anew
    rs.MoveLast();
    rs.Edit();
    rs.SetValue("Project", "last");
    rs.Update();
    elsewhere.MoveFirst();
    elsewhere.Edit();
    elsewhere.SetValue("Project", "first");
    elsewhere.Update();
    EXPECT_EQ(Rows(db, "Select * From Projects Order By [Owner ID]", "Project"), "first,P,last");
}

TEST_F(Schema, AFieldChangedAfterItsTableWasAppendedChangesTheFile) {
    Field size;
    {
        TableDef t = db.CreateTableDef("Sizes");
        size = t.CreateField("Size", dao::dbText, 10);
        t.Fields().Append(size);
        db.TableDefs().Append(t);
    }
    size.SetSize(20);
    size.SetAllowZeroLength(true);
    Reopen();
    EXPECT_EQ(Props(db.TableDefs()("Sizes").Fields()("Size")), "10 20 0 [] opt zls");
}

TEST_F(Schema, ATableNeedsAField) {
    TableDef t = db.CreateTableDef("Empty");
    EXPECT_EQ(ErrorOf([&] { db.TableDefs().Append(t); }), 3264);
    EXPECT_EQ(db.TableDefs().Count(), 0);
}

TEST_F(Schema, SavedQueriesKeepTheirJetTextAndServeAsTables) {
    CreateBookSchema(db);
    db.Execute("Insert Into PersonalData (FirstName, FullName) Values (\"O\"\"Hara\", \"Scarlett\")");
    db.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (1, 0, \"P\", False)");
    db.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (1, 1, \"Org\", False)");
    const std::string text =
        "Select [Personal ID], FirstName & \" *\" As Marked From PersonalData Where FirstName Like \"O\"\"*\";";
    dao::QueryDef q = db.CreateQueryDef("Marked", text);
    EXPECT_EQ(q.SQL(), text);
    // Saved at once: another connection sees it.
    Database other = Engine().OpenDatabase(path);
    EXPECT_EQ(other.QueryDefs()("marked").SQL(), text);
    EXPECT_EQ(Rows(other, "Marked", "Marked"), "O\"Hara *");

    // A saved query as a table in a join.
    EXPECT_EQ(Rows(db,
                   "Select PersonalData.FullName, PersPrj.Project From PersonalData Inner Join PersPrj On "
                   "PersPrj.[Owner ID] = PersonalData.[Personal ID]",
                   "Project"),
              "P");
    EXPECT_EQ(Rows(db, "Select Marked.Marked From Marked, PersonalData Where Marked.[Personal ID]=PersonalData.[Personal ID]",
                   "Marked"),
              "O\"Hara *");
    EXPECT_EQ(ErrorOf([&] { db.CreateQueryDef("persprj", "Select * From Projects"); }), 3012);
    EXPECT_EQ(ErrorOf([&] { db.CreateQueryDef("Projects", "Select * From Projects"); }), 3012);

    // The schema check rewrites a saved query's text.
    db.QueryDefs()("OrgPrj").SetSQL("Select * from Projects Where Projects.OwnerType=1 ;");
    EXPECT_EQ(Rows(db, "OrgPrj", "Project"), "Org");

    // An unnamed query is not saved but can be opened.
    dao::QueryDef temp = db.CreateQueryDef("", "Select * From Projects Where OwnerType=1");
    EXPECT_EQ(Column(temp.OpenRecordset(), "Project"), "Org");
    EXPECT_EQ(db.QueryDefs().Count(), 3);

    other.Close();
    Reopen();
    std::set<std::string> names;
    for (int i = 0; i < db.QueryDefs().Count(); ++i) names.insert(db.QueryDefs().Item(i).Name());
    EXPECT_EQ(names, (std::set<std::string>{"Marked", "OrgPrj", "PersPrj"}));
    EXPECT_EQ(db.QueryDefs()("OrgPrj").SQL(), "Select * from Projects Where Projects.OwnerType=1 ;");
    EXPECT_EQ(db.QueryDefs()("Marked").SQL(), text);
    EXPECT_EQ(Column(db.QueryDefs()("PersPrj").OpenRecordset(), "Project"), "P");
    db.QueryDefs().Delete("Marked");
    EXPECT_EQ(ErrorOf([&] { db.QueryDefs()("Marked"); }), 3265);
    EXPECT_EQ(db.TableDefs().Count(), 12);  // saved queries are no tables
}

// Jet checks a saved query only when it runs: no change of structure is
// refused because a saved query names what it changes, the query keeps its
// text, fails with 3078 or 3061 while the book lacks what it names, and
// works again once the book has it.
TEST_F(Schema, SavedQueriesNeverBlockAChangeOfStructure) {
    CreateBookSchema(db);
    db.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (1, 1, \"Org\", False)");
    db.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"a@b.org\", 2)");
    db.CreateQueryDef("Mails", "Select ResourceString From Resources Where ResourceType=2");
    db.CreateQueryDef("MailsAgain", "Select * From Mails");  // a query on a query
    const std::string orgPrj = db.QueryDefs()("OrgPrj").SQL();
    auto opens = [&](const std::string& q) { return ErrorOf([&] { db.OpenRecordset(q); }); };

    // A table renamed away and back.
    db.TableDefs()("Projects").SetName("OldProjects");
    EXPECT_EQ(opens("OrgPrj"), 3078);
    EXPECT_EQ(opens("Select * From PersPrj"), 3078);
    EXPECT_EQ(db.QueryDefs()("OrgPrj").SQL(), orgPrj);
    db.TableDefs()("OldProjects").SetName("Projects");
    EXPECT_EQ(Rows(db, "OrgPrj", "Project"), "Org");

    // A field renamed, then dropped, then added again, by DAO and by DDL.
    Field s = db.TableDefs()("Resources").Fields()("ResourceString");
    s.SetName("Address");
    EXPECT_EQ(opens("Mails"), 3061);
    EXPECT_EQ(opens("MailsAgain"), 3061);  // fails as the query it is built on
    db.TableDefs()("Resources").Fields().Delete("ResourceType");
    db.Execute("Alter Table Resources Drop Column Address");
    EXPECT_EQ(opens("Mails"), 3061);
    db.Execute("Alter Table Resources Add Column ResourceString Text(255)");
    TableDef r = db.TableDefs()("Resources");
    r.Fields().Append(r.CreateField("ResourceType", dao::dbLong));
    EXPECT_EQ(Rows(db, "MailsAgain", "ResourceString"), "");  // back, on an empty column
    db.Execute("Update Resources Set ResourceString = \"c@d.org\", ResourceType = 2");
    EXPECT_EQ(Rows(db, "MailsAgain", "ResourceString"), "c@d.org");

    // A table dropped and made anew; a Counter added to a table with rows.
    db.Execute("Drop Table Projects");
    EXPECT_EQ(opens("PersPrj"), 3078);
    db.Execute("Create Table Projects ([Owner ID] Long, OwnerType Long, Project Text(255))");
    db.Execute("Insert Into Projects ([Owner ID], OwnerType, Project) Values (1, 1, \"New\")");
    db.Execute("Alter Table Projects Add Column Nr Counter");
    EXPECT_EQ(Rows(db, "OrgPrj", "Project"), "New");

    // A saved query may be written before what it names exists.
    db.CreateQueryDef("Later", "Select Title From Notes");
    EXPECT_EQ(opens("Later"), 3078);
    EXPECT_EQ(ErrorOf([&] { db.CreateQueryDef("Broken", "Select From Where"); }), 3141);
    db.Execute("Create Table Notes (Title Text(50))");
    db.Execute("Insert Into Notes (Title) Values (\"hello\")");
    Reopen();
    EXPECT_EQ(Rows(db, "Later", "Title"), "hello");
    EXPECT_EQ(db.QueryDefs().Count(), 5);
}

// A name matches whatever the case of its letters, in any alphabet, in
// every place a name is looked up: the catalog, the translator's columns,
// record set fields, criteria and saved queries.
TEST_F(Schema, NamesIgnoreCaseInEveryAlphabet) {
    db.Execute("Create Table Тест (Имя Text(50), Σίσυφος Long)");
    db.Execute("Insert Into ТЕСТ (ИМЯ, ΣΊΣΥΦΟΣ) Values (\"Ада\", 7)");
    EXPECT_EQ(Rows(db, "Select имя From тест", "ИМЯ"), "Ада");
    EXPECT_EQ(Rows(db, "Select тест.имя, σίσυφοσ From тЕСТ Where σίσυφος = 7", "Σίσυφος"), "7");
    db.Execute("Update тест Set иМЯ = \"Бо\" Where ИмЯ = \"ада\"");
    Recordset rs = db.OpenRecordset("тест");
    rs.FindFirst("ИМЯ = \"бо\"");
    EXPECT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs.Fields()("имя").Value().AsText(), "Бо");
    EXPECT_EQ(db.TableDefs()("ТЕСТ").Fields()("ИМЯ").Name(), "Имя");
    db.CreateQueryDef("Имена", "Select имя From ТЕСТ");
    EXPECT_EQ(Rows(db, "Select ИМЯ From имена", "имя"), "Бо");
    EXPECT_EQ(ErrorOf([&] { db.Execute("Alter Table тест Add Column ИМЯ Text(10)"); }), 3380);
    // Case is all that is ignored.
    EXPECT_EQ(ErrorOf([&] { db.OpenRecordset("Select Имe From Тест"); }), 3061);
}

}  // namespace
}  // namespace zelvo::testing
