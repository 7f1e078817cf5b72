// CorrectDB: a book made from nothing, books of the older layouts, the
// places an earlier book is found, and files that are no book at all.
#include "store/correct_db.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/dao/dao_error.h"
#include "platform/dao/dao_test_util.h"
#include "platform/shell/file_system.h"
#include "old_layout_books.h"
#include "store_test_util.h"
#include "support/book_fixture.h"

namespace zelvo::testing {
namespace {

using namespace zelvo::dao;

constexpr const char* kTodaysSchema =
    "AddressesOwners: Address ID Long, Owner ID Long, OwnerType Long =0\n"
    "Employees: Job ID Long, Personal ID Long, Room ID Long, Comments Text(255) zla, Employee ID Counter\n"
    "JobTitles: Organization ID Long, JobTitle Text(255), Comments Text(255) zla, Job ID Counter\n"
    "Organizations: Organization Text(255), Parent ID Long, Comments Text(255) zla, Organization ID Counter\n"
    "PersonalData: FirstName Text(50) zla, MiddleName Text(50) zla, SurName Text(50) zla, "
    "FullName Text(255) zla, Comments Text(255) zla, Personal ID Counter\n"
    "PhoneTypes: typeName Text(50), type ID Counter\n"
    "Photo: Personal ID Long, Photo LongBinary, Photo ID Counter\n"
    "PostAddresses: PostIndex Text(50), Address Text(50), aParent ID Long, aType Long, Address ID Counter\n"
    "Projects: Owner ID Long, OwnerType Long =0, Project Text(255), InsArcPrj YesNo\n"
    "Resources: ResourceString Text(255), ResourceType Long =0, ResourceSubType Long =0, Resource ID Counter\n"
    "ResourcesOwners: Resource ID Long, Owner ID Long, OwnerType Long\n"
    "Rooms: Organization ID Long, RoomName Text(255), IsContainer YesNo, rParent ID Long, Room ID Counter\n"
    "query OrgPrj: Select * from Projects Where Projects.OwnerType=1;\n"
    "query PersPrj: Select * from Projects Where Projects.OwnerType=0;\n";

// Every row of every table of today's layout, as text.
std::string AllRows(const Database& db) {
    std::string out;
    for (const char* t : {"PersonalData", "Photo", "Organizations", "JobTitles", "Employees", "Rooms",
                          "PostAddresses", "AddressesOwners", "Resources", "ResourcesOwners", "Projects",
                          "PhoneTypes"})
        out += std::string(t) + ": " + RowsText(db, std::string("Select * From [") + t + "]") + "\n";
    return out;
}

bool HasTable(const Database& db, const std::string& name) {
    return ErrorOf([&] { db.TableDefs()(name); }) == 0;
}

using CorrectDbTest = StoreTest;

TEST_F(CorrectDbTest, FromNothingMakesTodaysBookAndASecondRunChangesNothing) {
    std::string path;
    CorrectDB(path);
    EXPECT_EQ(path, book());  // the empty path comes back filled
    ASSERT_TRUE(shell::FileExists(book()));
    EXPECT_EQ(shell::GetAttributes(book()) & shell::kHidden, shell::kHidden);
    {
        Database db = Engine().OpenDatabase(book());
        EXPECT_EQ(SchemaText(db), kTodaysSchema);
        EXPECT_EQ(AllRows(db),
                  "PersonalData: \nPhoto: \nOrganizations: \nJobTitles: \nEmployees: \nRooms: \n"
                  "PostAddresses: \nAddressesOwners: \nResources: \nResourcesOwners: \nProjects: \n"
                  "PhoneTypes: \n");
        // The counters number new rows; Comments and PhoneTypes are there, empty.
        Recordset rs = db.OpenRecordset("PersonalData");
        rs.AddNew();
        EXPECT_EQ(rs("Personal ID").AsInteger(), 1);
        rs.SetValue("FullName", "");  // zero length allowed
        rs.Update();
        db.Close();
    }
    std::string before = ReadBytes(book());
    int reports = Reports();
    std::string again = book();
    CorrectDB(again);
    EXPECT_EQ(Reports(), reports);
    EXPECT_EQ(ReadBytes(book()), before);
}

TEST_F(CorrectDbTest, TodaysBookKeepsItsRowsAndARewrittenQueryComesBack) {
    CreateSampleBook(book()).Close();
    std::string rows;
    {
        Database db = Engine().OpenDatabase(book());
        rows = AllRows(db);
        db.QueryDefs()("OrgPrj").SetSQL("Select * from Projects");
        db.QueryDefs().Delete("PersPrj");
        db.Close();
    }
    std::string path = book();
    CorrectDB(path);
    Database db = Engine().OpenDatabase(book());
    EXPECT_EQ(AllRows(db), rows);
    EXPECT_EQ(SchemaText(db), kTodaysSchema);
}

TEST_F(CorrectDbTest, EarliestLayoutIsConvertedWithoutLosingARow) {
    CreateEarliestBook(book());
    std::string path = book();
    CorrectDB(path);
    Database db = Engine().OpenDatabase(book());

    // E-mail addresses: resources of type 2, each owned by its person.
    EXPECT_FALSE(HasTable(db, "E-MailAdresses"));
    EXPECT_EQ(RowsText(db, "Select ResourceString, ResourceType, ResourceSubType, [Owner ID], OwnerType "
                           "From Resources Inner Join ResourcesOwners "
                           "On Resources.[Resource ID] = ResourcesOwners.[Resource ID] Order By ResourceString"),
              "ada@a.org|2|0|1|0;ada@b.org|2|0|1|0;bob@c.org|2|0|2|0");
    EXPECT_EQ(RowsText(db, "Select Count(*) From ResourcesOwners"), "3");

    // Projects: Owner ID takes Personal ID's values, every row a person's.
    EXPECT_EQ(RowsText(db, "Select [Owner ID], OwnerType, Project, InsArcPrj From Projects Order By [Owner ID]"),
              "1|0|A|False;2|0|A\\B|False;3|0|Old|True");

    // Employers: a named one becomes a job title without a name held by the
    // person; a blank one is gone.
    EXPECT_EQ(RowsText(db, "Select Organization, JobTitle, Employees.[Personal ID] From (Organizations "
                           "Inner Join JobTitles On Organizations.[Organization ID] = JobTitles.[Organization ID]) "
                           "Inner Join Employees On JobTitles.[Job ID] = Employees.[Job ID] Order By Organization"),
              "Acme|Null|1;Globex|Null|3");
    EXPECT_EQ(RowsText(db, "Select Count(*) From Organizations"), "2");

    // Persons keep their rows; the old archive flag is gone.
    EXPECT_EQ(RowsText(db, "Select [Personal ID], FullName From PersonalData Order By [Personal ID]"),
              "1|Ada;2|Bob;3|Cy");
    // The old columns are gone and what is left is today's layout, though
    // converted columns stand in their old places.
    std::string fresh;
    {
        Database empty = Engine().CreateDatabase(dir_.File("fresh.mdb"));
        empty.Close();
        std::string p = dir_.File("fresh.mdb");
        CorrectDB(p);
        Database f = Engine().OpenDatabase(p);
        fresh = SchemaText(f, true);
    }
    EXPECT_EQ(SchemaText(db, true), fresh);

    // A second run finds nothing left to convert.
    std::string rows = AllRows(db);
    db.Close();
    CorrectDB(path);
    Database again = Engine().OpenDatabase(book());
    EXPECT_EQ(AllRows(again), rows);
}

// Saved queries that name the old tables and fields — today's two, made
// before the conversion, and one over the old e-mail table — must not stop
// a single run from converting everything: the book comes out as one
// without them, and only the query over what is gone fails when opened.
TEST_F(CorrectDbTest, SavedQueriesOverTheOldLayoutDoNotHoldItsConversionBack) {
    std::string plain = dir_.File("plain.mdb");
    CreateEarliestBook(plain);
    CorrectDB(plain);
    std::string expected = AllRows(Engine().OpenDatabase(plain));

    CreateEarliestBook(book());
    {
        Database db = Engine().OpenDatabase(book());
        db.CreateQueryDef("OrgPrj", "Select * from Projects Where Projects.OwnerType=1;");
        db.CreateQueryDef("PersPrj", "Select * from Projects Where Projects.[Personal ID]>0;");
        db.CreateQueryDef("Mails", "Select [E-mailAdress], [Personal ID] From [E-MailAdresses]");
        db.CreateQueryDef("Employers", "Select Organization, [Personal ID] From Organizations");
        EXPECT_EQ(RowsText(db, "Select Count(*) From Mails"), "3");
        db.Close();
    }
    std::string path = book();
    CorrectDB(path);
    Database db = Engine().OpenDatabase(book());
    EXPECT_EQ(AllRows(db), expected);
    EXPECT_FALSE(HasTable(db, "E-MailAdresses"));
    EXPECT_EQ(RowsText(db, "Select Project From PersPrj Order By Project"), "A;A\\B;Old");
    EXPECT_EQ(RowsText(db, "Select Count(*) From OrgPrj"), "0");
    EXPECT_EQ(ErrorOf([&] { db.OpenRecordset("Mails"); }), 3078);
    EXPECT_EQ(ErrorOf([&] { db.OpenRecordset("Employers"); }), 3061);
}

TEST_F(CorrectDbTest, ColumnOfAnotherSizeStaysAsItIs) {
    {
        Database db = Engine().CreateDatabase(book());
        MakeTable(db, "PersonalData", {{"FullName", dbText, 100}}, "Personal ID");
        db.Execute("Insert Into PersonalData (FullName) Values (\"Keep me\")");
        db.Close();
    }
    std::string path = book();
    CorrectDB(path);
    Database db = Engine().OpenDatabase(book());
    EXPECT_EQ(db.TableDefs()("PersonalData").Fields()("FullName").Size(), 100);
    EXPECT_EQ(RowsText(db, "Select FullName, SurName From PersonalData"), "Keep me|Null");
}

TEST_F(CorrectDbTest, EarlierBookBesideNoBookIsCopiedConvertedAndLeftInPlace) {
    CreateEarliestBook(InApp("AddressBook.mdb"));
    std::string path;
    CorrectDB(path);
    ASSERT_TRUE(shell::FileExists(book()));
    EXPECT_EQ(CountRows(book(), "ResourcesOwners"), 3);
    Database old = Engine().OpenDatabase(InApp("AddressBook.mdb"));
    EXPECT_TRUE(HasTable(old, "E-MailAdresses"));
    EXPECT_FALSE(HasTable(old, "Resources"));
}

TEST_F(CorrectDbTest, SourcesAreTriedInOrder) {
    // The name of person 1 in the book that a run of CorrectDB made.
    auto madeFrom = [&] {
        std::string path;
        CorrectDB(path);
        Database db = Engine().OpenDatabase(book());
        std::string name = RowsText(db, "Select FullName From PersonalData Where [Personal ID]=1");
        db.Close();
        shell::SetAttributes(book(), 0);
        std::filesystem::remove(book());
        return name;
    };
    // The book's old place comes before "AddressBook.mdb", which comes
    // before that one's old place.
    CreateEarliestBook(InProgram("AddressBook.mdb"), "old place of old name");
    EXPECT_EQ(madeFrom(), "old place of old name");
    CreateEarliestBook(InApp("AddressBook.mdb"), "old name");
    EXPECT_EQ(madeFrom(), "old name");
    CreateEarliestBook(InProgram("AddressBookW.mdb"), "old place");
    EXPECT_EQ(madeFrom(), "old place");
}

TEST_F(CorrectDbTest, ProgramFolderAsDataFolderIsNoSourceOfItself) {
    // With no application folder the book lives beside the program, which
    // is also where earlier versions kept it: that is the book, not a source.
    AppPath.clear();
    std::string path;
    CorrectDB(path);
    EXPECT_EQ(path, InProgram("AddressBookW.mdb"));
    EXPECT_TRUE(shell::FileExists(path));
    CorrectDB(path);
    EXPECT_EQ(CountRows(path, "PersonalData"), 0);
}

std::string JetHeader() {
    std::string page(4096 * 2, '\0');
    std::string magic = std::string("\x00\x01\x00\x00", 4) + "Standard Jet DB";
    page.replace(0, magic.size(), magic);
    page[0x14] = '\x01';  // Jet 4
    return page;
}

std::string RandomBytes(size_t n) {
    std::mt19937 gen(7);
    std::string s(n, '\0');
    for (char& c : s) c = static_cast<char>(gen() & 0xFF);
    return s;
}

TEST_F(CorrectDbTest, ForeignFileIsNeverDestroyedAndIsReported) {
    CreateEarliestBook(InApp("AddressBook.mdb"));  // a source that could replace it
    for (const auto& [what, bytes] : std::vector<std::pair<std::string, std::string>>{
             {"Jet header", JetHeader()}, {"random bytes", RandomBytes(12288)}, {"empty file", ""}}) {
        SCOPED_TRACE(what);
        WriteBytes(book(), bytes);
        int reports = Reports();
        std::string path = book();
        CorrectDB(path);
        EXPECT_EQ(ReadBytes(book()), bytes);
        EXPECT_EQ(Reports(), reports + 1);
        // The one compaction it went through kept a copy too.
        EXPECT_EQ(ReadBytes(InApp("~AddressBookW.mdb")), bytes);
        EXPECT_FALSE(shell::FileExists(InApp("~~AddressBookW.mdb")));
    }
    std::string log = ReadBytes(InApp(".settings/zelvo.log"));
    EXPECT_NE(log.find("zelvo.dll\\Module1\\CorrectDB: error 3343"), std::string::npos) << log;
}

TEST_F(CorrectDbTest, ForeignEarlierBookIsReportedAndLeftAlone) {
    std::string bytes = RandomBytes(5000);
    WriteBytes(InApp("AddressBook.mdb"), bytes);
    int reports = Reports();
    std::string path;
    CorrectDB(path);
    EXPECT_EQ(Reports(), reports + 1);
    EXPECT_EQ(ReadBytes(InApp("AddressBook.mdb")), bytes);
    EXPECT_FALSE(shell::FileExists(book()));
}

TEST_F(CorrectDbTest, BookHeldAloneElsewhereEndsSilently) {
    CreateSampleBook(book()).Close();
    std::string before = ReadBytes(book());
    auto other = HoldInOtherProcess(book(), true);
    ASSERT_EQ(other->error(), 0);
    int reports = Reports();
    std::string path = book();
    CorrectDB(path);
    EXPECT_EQ(Reports(), reports);
    other->End();
    EXPECT_EQ(ReadBytes(book()), before);
}

TEST_F(CorrectDbTest, BookOpenSharedHereIsCorrectedAndOthersSeeIt) {
    CreateSampleBook(book()).Close();
    Database mine = Engine().OpenDatabase(book());
    mine.Execute("Delete From PhoneTypes");
    mine.QueryDefs().Delete("OrgPrj");
    std::string path = book();
    CorrectDB(path);
    EXPECT_EQ(mine.QueryDefs()("OrgPrj").SQL(), "Select * from Projects Where Projects.OwnerType=1;");
}

TEST_F(CorrectDbTest, MissingDataFolderIsMade) {
    AppPath = dir_.File("new/nested");
    std::string path;
    CorrectDB(path);
    EXPECT_TRUE(shell::FileExists(dir_.File("new/nested/AddressBookW.mdb")));
}

}  // namespace
}  // namespace zelvo::testing
