// Every error number the engine raises, each from the cause the book's code
// meets it by: files that are missing, not ours or held by someone else,
// misspelt SQL, rules of the columns, records that are not there, objects
// that are closed.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "dao_test_util.h"
#include "platform/dao/connection.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using dao::Database;
using dao::Engine;
using dao::Recordset;
namespace fs = std::filesystem;

void WriteAll(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
}

class EngineErrors : public SampleBookTest {};

TEST_F(EngineErrors, MissingFilesAndFolders) {
    const std::string missing = dir.File("Missing.mdb");
    EXPECT_EQ(Describe([&] { Engine().OpenDatabase(missing); }), "3024 Could not find file '" + missing + "'.");
    EXPECT_EQ(ErrorOf([&] { Engine().OpenDatabase(dir.path().string()); }), 3024);  // a folder is no file
    EXPECT_EQ(Describe([&] { Engine().OpenDatabase(dir.File("no/such/folder/x.mdb")); }),
              "3044 '" + dir.File("no/such/folder") +
                  "' is not a valid path. Make sure that the path name is spelled correctly and that you are "
                  "connected to the server on which the file resides.");
    EXPECT_EQ(ErrorOf([&] { Engine().CreateDatabase(dir.File("no/such/folder/x.mdb")); }), 3044);
    EXPECT_EQ(Describe([&] { Engine().CreateDatabase(path); }), "3204 Database already exists.");
    EXPECT_FALSE(fs::exists(missing));
}

// 3343 for every file that is no book of ours, and the file stays as it was.
TEST_F(EngineErrors, FilesThatAreNotOursAreRefusedUntouched) {
    std::string jet(4096, '\0');
    const char magic[] = "\x00\x01\x00\x00Standard Jet DB";
    jet.replace(0, sizeof magic, magic, sizeof magic);
    jet[0x14] = 0x01;  // Jet 4
    for (size_t i = 0x18; i < 0x18 + 128; ++i) jet[i] = static_cast<char>(i * 37);
    std::string noise(8192, '\0');
    std::mt19937 rng(7);
    for (char& c : noise) c = static_cast<char>(rng());

    const std::string foreign = dir.File("foreign.db");
    {
        sqlite3* raw = nullptr;
        ASSERT_EQ(sqlite3_open(foreign.c_str(), &raw), SQLITE_OK);
        sqlite3_exec(raw, "CREATE TABLE t(a); INSERT INTO t VALUES (1);", nullptr, nullptr, nullptr);
        sqlite3_close(raw);
    }
    WriteAll(dir.File("jet.mdb"), jet);
    WriteAll(dir.File("noise.mdb"), noise);
    WriteAll(dir.File("empty.mdb"), "");
    WriteAll(dir.File("text.mdb"), "Name;Phone\r\nIvanov;123\r\n");
    for (const char* name : {"jet.mdb", "noise.mdb", "empty.mdb", "text.mdb", "foreign.db"}) {
        const std::string file = dir.File(name);
        const std::string before = ReadAll(file);
        EXPECT_EQ(Describe([&] { Engine().OpenDatabase(file); }), "3343 Unrecognized database format '" + file + "'.")
            << name;
        EXPECT_EQ(ErrorOf([&] { Engine().CompactDatabase(file, dir.File("copy.mdb")); }), 3343) << name;
        EXPECT_EQ(ReadAll(file), before) << name;
        EXPECT_FALSE(fs::exists(file + "-wal")) << name;
        EXPECT_FALSE(fs::exists(dir.File("copy.mdb"))) << name;
    }
}

TEST_F(EngineErrors, AFileHeldExclusivelyInThisProcess) {
    // Held shared by `db`: nobody gets it alone.
    EXPECT_EQ(ErrorOf([&] { Engine().OpenDatabase(path, true); }), 3045);
    Database second = Engine().OpenDatabase(path);  // shared beside shared is fine
    second.Close();
    db.Close();

    Database alone = Engine().OpenDatabase(path, true);
    const std::string err = Describe([&] { Engine().OpenDatabase(path); });
    char host[256] = {};
    gethostname(host, sizeof host - 1);
    EXPECT_EQ(err, std::string("3356 You attempted to open a database that is already opened exclusively by user "
                               "'Admin' on machine '") + host + "'. Try again when the database is available.");
    EXPECT_EQ(ErrorOf([&] { Engine().OpenDatabase(path, true); }), 3356);
    alone.Close();
    EXPECT_EQ(ErrorOf([&] { Engine().OpenDatabase(path).Close(); }), 0);
}

TEST_F(EngineErrors, AFileHeldByAnotherProcess) {
    db.Close();  // the child must not inherit our claim on the file
    {
        auto child = HoldInOtherProcess(path, true);
        ASSERT_EQ(child->error(), 0);
        EXPECT_EQ(Describe([&] { Engine().OpenDatabase(path); }),
                  "3045 Could not use '" + path + "'; file already in use.");
        EXPECT_EQ(ErrorOf([&] { Engine().OpenDatabase(path, true); }), 3045);
    }
    {
        auto child = HoldInOtherProcess(path, false);
        ASSERT_EQ(child->error(), 0);
        EXPECT_EQ(ErrorOf([&] { Engine().OpenDatabase(path, true); }), 3045);
        Database shared = Engine().OpenDatabase(path);
        EXPECT_EQ(Rows(shared, "Select * From PersonalData Where [Personal ID]=2", "FullName"), "Smith");
    }
    // The child is gone and its claim with it.
    Database alone = Engine().OpenDatabase(path, true);
}

TEST_F(EngineErrors, MisspeltNamesAndBrokenExpressions) {
    EXPECT_EQ(Describe([&] { db.OpenRecordset("Select FulName From PersonalData"); }),
              "3061 Too few parameters. Expected 1.");
    EXPECT_EQ(ErrorOf([&] { db.OpenRecordset("Select * From PersonalData Where [Persnal ID]=1 Or Nme=2"); }), 3061);
    EXPECT_EQ(ErrorOf([&] { db.Execute("Update PersonalData Set FulName=\"x\" Where [Personal ID]=1"); }), 3061);
    EXPECT_EQ(ErrorOf([&] { db.OpenRecordset("Select * From PersonalData Where FirstName = = \"x\""); }), 3075);
    EXPECT_EQ(ErrorOf([&] { db.OpenRecordset("Select * From PersonalData Where (FirstName = \"x\""); }), 3075);

    Recordset rs = db.OpenRecordset("PersonalData");
    rs.MoveNext();
    EXPECT_EQ(ErrorOf([&] { rs.FindFirst("[FulName]=\"Smith\""); }), 3070);
    EXPECT_EQ(ErrorOf([&] { rs.FindNext("[FullName]=\"Smith\" And Nme=1"); }), 3070);
    EXPECT_EQ(ErrorOf([&] { rs.FindFirst("[FullName]="); }), 3075);
    EXPECT_EQ(ErrorOf([&] { rs.FindLast("[FullName] \"Smith\""); }), 3075);
    EXPECT_EQ(rs("Personal ID").AsInteger(), 2);  // a refused search leaves the cursor alone
}

TEST_F(EngineErrors, TablesThatExistAlready) {
    dao::TableDef t = db.CreateTableDef("personaldata");
    t.Fields().Append(t.CreateField("x", dao::dbLong));
    EXPECT_EQ(Describe([&] { db.TableDefs().Append(t); }), "3010 Table 'personaldata' already exists.");
    EXPECT_EQ(ErrorOf([&] { db.Execute("Create Table Projects (x Long)"); }), 3010);
    dao::TableDef fresh = db.CreateTableDef("Fresh");
    fresh.Fields().Append(fresh.CreateField("x", dao::dbLong));
    db.TableDefs().Append(fresh);
    EXPECT_EQ(ErrorOf([&] { db.TableDefs().Append(fresh); }), 3010);  // appended twice
    // The book's schema check appends a table it took from TableDefs: 3010, passed over.
    EXPECT_EQ(ErrorOf([&] { db.TableDefs().Append(db.TableDefs()("Projects")); }), 3010);
}

TEST_F(EngineErrors, NoCurrentRecord) {
    Recordset rs = db.OpenRecordset("Select * From PersonalData Where [Personal ID]=2");
    rs.MoveNext();
    EXPECT_EQ(Describe([&] { rs("FullName"); }), "3021 No current record.");
    EXPECT_EQ(ErrorOf([&] { rs.Edit(); }), 3021);
    EXPECT_EQ(ErrorOf([&] { rs.Delete(); }), 3021);
    rs.MovePrevious();
    rs.MovePrevious();
    EXPECT_EQ(ErrorOf([&] { rs.Edit(); }), 3021);
    EXPECT_EQ(ErrorOf([&] { rs.Value(0); }), 3021);
    EXPECT_EQ(ErrorOf([&] { rs.AbsolutePosition(); }), 0);  // -1, not an error
}

TEST_F(EngineErrors, DuplicateCounterValue) {
    EXPECT_EQ(Describe([&] {
                  db.Execute("Insert Into PersonalData ([Personal ID], FullName) Values (2, \"Twin\")");
              }),
              "3022 The changes you requested to the table were not successful because they would create "
              "duplicate values in the index, primary key, or relationship. Change the data in the field or fields "
              "that contain duplicate data, remove the index, or redefine the index to permit duplicate entries "
              "and try again.");
    EXPECT_EQ(Rows(db, "Select * From PersonalData Where [Personal ID]=2", "FullName"), "Smith");
}

// Keys written in Create Table hold: on a column, as a CONSTRAINT item,
// over two columns; texts compare without case; a key survives a rebuild
// of its table, and a field in one cannot be dropped.
TEST_F(EngineErrors, KeysOfCreateTableRefuseDuplicates) {
    db.Execute("Create Table Codes (Code Text(10) Primary Key, Label Text(50) Unique, A Long, B Long, "
               "Constraint pair Unique (A, B))");
    db.Execute("Insert Into Codes (Code, Label, A, B) Values (\"x\", \"one\", 1, 1)");
    EXPECT_EQ(ErrorOf([&] { db.Execute("Insert Into Codes (Code, Label, A, B) Values (\"X\", \"two\", 1, 2)"); }),
              3022);
    EXPECT_EQ(ErrorOf([&] { db.Execute("Insert Into Codes (Code, Label, A, B) Values (\"y\", \"ONE\", 1, 2)"); }),
              3022);
    EXPECT_EQ(ErrorOf([&] { db.Execute("Insert Into Codes (Code, Label, A, B) Values (\"y\", \"two\", 1, 1)"); }),
              3022);
    EXPECT_EQ(ErrorOf([&] { db.Execute("Insert Into Codes (Label) Values (\"no key\")"); }), 3314);
    db.Execute("Insert Into Codes (Code, Label, A, B) Values (\"y\", \"two\", 1, 2)");

    dao::TableDef t = db.TableDefs()("Codes");
    t.Fields().Append(t.CreateField("Note", dao::dbText, 20));  // the table is made anew
    Recordset rs = db.OpenRecordset("Codes");
    rs.AddNew();
    rs.SetValue("Code", "Y");
    EXPECT_EQ(ErrorOf([&] { rs.Update(); }), 3022);
    rs.CancelUpdate();
    EXPECT_EQ(Describe([&] { t.Fields().Delete("B"); }),
              "3280 Cannot delete a field that is part of an index or is needed by the system.");
    t.Fields().Delete("Note");
    EXPECT_EQ(Rows(db, "Select Code From Codes Order By Code", "Code"), "x,y");
    EXPECT_EQ(ErrorOf([&] { db.Execute("Create Table Bad (A Long, Primary Key (Z))"); }), 3290);
}

// Errors the book's code can meet, each from what causes it.
TEST_F(EngineErrors, MisusesRaiseJetsNumbers) {
    EXPECT_EQ(Describe([&] { db.Execute("Select * From PersonalData"); }), "3065 Cannot execute a select query.");
    EXPECT_EQ(ErrorOf([&] { db.OpenRecordset("Delete From PersonalData"); }), 3219);
    EXPECT_EQ(Rows(db, "Select Count(*) As n From PersonalData", "n"), "4");  // nothing was run

    Recordset rs = db.OpenRecordset("Select [Personal ID], FullName & \"!\" As Shout From PersonalData");
    rs.Edit();
    EXPECT_EQ(ErrorOf([&] { rs.SetValue("Shout", "x"); }), 3164);  // a calculated field
    rs.CancelUpdate();
    rs.AddNew();
    EXPECT_EQ(ErrorOf([&] { rs.SetValue("Personal ID", 99); }), 3164);  // the engine numbers new rows
    rs.CancelUpdate();
}

// A file that cannot grow: 3026, and the book keeps what it had.
TEST_F(EngineErrors, AFullDiskIsReportedAndLosesNothing) {
    sqlite3* raw = db.connection()->db();
    ASSERT_EQ(sqlite3_exec(raw, "PRAGMA max_page_count = 1", nullptr, nullptr, nullptr), SQLITE_OK);
    std::string big(4000, 'x');
    Recordset rs = db.OpenRecordset("Photo");
    EXPECT_EQ(Describe([&] {
                  for (int i = 0; i < 200; ++i) {
                      rs.AddNew();
                      rs.SetValue("Personal ID", 1);
                      rs.SetValue("Photo", Variant(Bytes(big.begin(), big.end())));
                      rs.Update();
                  }
              }),
              "3026 Not enough space on disk.");
    rs.CancelUpdate();
    db.Close();
    db = Engine().OpenDatabase(path);
    EXPECT_EQ(Rows(db, "Select Count(*) As n From PersonalData", "n"), "4");
}

TEST_F(EngineErrors, TextTooLongForTextN) {
    db.Execute("Create Table Codes (Code Text(5), Note Memo)");
    EXPECT_EQ(ErrorOf([&] { db.Execute("Insert Into Codes (Code) Values (\"123456\")"); }), 3163);
    db.Execute("Insert Into Codes (Code, Note) Values (\"ЖЖЖЖЖ\", \"" + std::string(1000, 'm') + "\")");
    Recordset rs = db.OpenRecordset("Codes");
    rs.AddNew();
    EXPECT_EQ(Describe([&] { rs.SetValue("Code", "abcdef"); }),
              "3163 The field is too small to accept the amount of data you attempted to add. Try inserting or "
              "pasting less data.");
    rs.SetValue("Code", "abcde");
    rs.Update();
    EXPECT_EQ(Rows(db, "Select * From Codes", "Code"), "ЖЖЖЖЖ,abcde");
}

TEST_F(EngineErrors, ItemsThatAreNotInTheirCollection) {
    EXPECT_EQ(Describe([&] { db.TableDefs()("Persons"); }), "3265 Item not found in this collection.");
    EXPECT_EQ(ErrorOf([&] { db.TableDefs().Item(99); }), 3265);
    EXPECT_EQ(ErrorOf([&] { db.QueryDefs()("NoQuery"); }), 3265);
    EXPECT_EQ(ErrorOf([&] { db.TableDefs()("Projects").Fields()("Personal ID"); }), 3265);
    EXPECT_EQ(ErrorOf([&] { db.TableDefs()("Projects").Fields().Delete("Personal ID"); }), 3265);
    EXPECT_EQ(ErrorOf([&] { db.TableDefs().Delete("E-MailAdresses"); }), 3265);
    Recordset rs = db.OpenRecordset("PersonalData");
    EXPECT_EQ(ErrorOf([&] { rs("Personal"); }), 3265);
    EXPECT_EQ(ErrorOf([&] { rs.Fields().Item(6); }), 3265);
    EXPECT_EQ(ErrorOf([&] { rs.Value(-1); }), 3265);
}

class ColumnRules : public EngineErrors {
protected:
    void SetUp() override {
        EngineErrors::SetUp();
        dao::TableDef t = db.CreateTableDef("Rules");
        dao::Field name = t.CreateField("Name", dao::dbText, 20);
        name.SetRequired(true);
        name.SetAllowZeroLength(true);
        t.Fields().Append(name);
        t.Fields().Append(t.CreateField("Code", dao::dbText, 10));  // zero length not allowed: DAO's default
        t.Fields().Append(t.CreateField("N", dao::dbLong));
        db.TableDefs().Append(t);
    }
};

TEST_F(ColumnRules, RequiredFieldRefusesNull) {
    Recordset rs = db.OpenRecordset("Rules");
    rs.AddNew();
    rs.SetValue("Code", "x");
    EXPECT_EQ(Describe([&] { rs.Update(); }),
              "3314 The field 'Name' cannot contain a Null value because the Required property for this field is "
              "set to True. Enter a value in this field.");
    rs.SetValue("Name", "");  // empty is no Null, and allowed here
    rs.Update();
    EXPECT_EQ(ErrorOf([&] { db.Execute("Insert Into Rules (Code) Values (\"y\")"); }), 3314);
    EXPECT_EQ(ErrorOf([&] { db.Execute("Update Rules Set Name = Null"); }), 3314);
    EXPECT_EQ(Rows(db, "Rules", "Code"), "x");
}

TEST_F(ColumnRules, ZeroLengthTextRefusedWhereNotAllowed) {
    EXPECT_EQ(Describe([&] { db.Execute("Insert Into Rules (Name, Code) Values (\"a\", \"\")"); }),
              "3315 Field 'Code' cannot be a zero-length string.");
    Recordset rs = db.OpenRecordset("Rules");
    rs.AddNew();
    rs.SetValue("Name", "a");
    rs.SetValue("Code", "");
    EXPECT_EQ(ErrorOf([&] { rs.Update(); }), 3315);
    rs.CancelUpdate();
    // A text of characters the collation passes over is not empty.
    db.Execute("Insert Into Rules (Name, Code) Values (\"tab\", \"\t\")");
    rs.AddNew();
    rs.SetValue("Name", "zero-width");
    rs.SetValue("Code", "\xE2\x80\x8B");  // U+200B
    rs.Update();
    EXPECT_EQ(Rows(db, "Select * From Rules Order By Name", "Name"), "tab,zero-width");
}

TEST_F(EngineErrors, DistinctAndSnapshotSetsAreReadOnly) {
    Recordset rs = db.OpenRecordset("Select Distinct [Owner ID] From Projects");
    EXPECT_FALSE(rs.Updatable());
    EXPECT_EQ(Describe([&] { rs.Edit(); }), "3326 This Recordset is not updatable.");
    EXPECT_EQ(ErrorOf([&] { rs.AddNew(); }), 3326);
    EXPECT_EQ(ErrorOf([&] { rs.Delete(); }), 3326);
    Recordset snap = db.OpenRecordset("PersonalData", dao::dbOpenSnapshot);
    EXPECT_EQ(Describe([&] { snap.Edit(); }), "3027 Cannot update. Database or object is read-only.");
    EXPECT_TRUE(db.OpenRecordset("Select DistinctRow * From Projects").Updatable());

    // A join written in WHERE is read-only; the same join written with
    // JOIN is not. A saved query over one table can be edited.
    Recordset comma = db.OpenRecordset(
        "Select FullName, Project From PersonalData, Projects Where Projects.[Owner ID] = PersonalData.[Personal ID]");
    EXPECT_FALSE(comma.Updatable());
    EXPECT_EQ(ErrorOf([&] { comma.Edit(); }), 3027);
    EXPECT_EQ(ErrorOf([&] { comma.AddNew(); }), 3027);
    EXPECT_TRUE(db.OpenRecordset("Select FullName, Project From PersonalData Inner Join Projects On "
                                 "Projects.[Owner ID] = PersonalData.[Personal ID]")
                    .Updatable());
    Recordset saved = db.OpenRecordset("PersPrj");
    saved.Edit();
    saved.SetValue("Project", "Renamed");
    saved.Update();
    EXPECT_EQ(Rows(db, "Select Project From Projects Where Project = \"Renamed\"", "Project"), "Renamed");
    EXPECT_TRUE(db.QueryDefs()("PersPrj").OpenRecordset().Updatable());
}

TEST_F(EngineErrors, ClosedObjectsAreInvalid) {
    Recordset rs = db.OpenRecordset("PersonalData");
    dao::Field field = rs.Fields()("FullName");
    rs.Close();
    EXPECT_EQ(Describe([&] { rs.Close(); }), "3420 Object is invalid or no longer set.");
    EXPECT_EQ(ErrorOf([&] { field.Value(); }), 3420);
    EXPECT_EQ(ErrorOf([&] { rs.Fields(); }), 3420);

    Recordset open = db.OpenRecordset("PersonalData");
    dao::TableDefs tables = db.TableDefs();
    dao::TableDef projects = tables("Projects");
    dao::QueryDefs queries = db.QueryDefs();
    dao::QueryDef persPrj = queries("PersPrj");
    db.Close();
    EXPECT_EQ(ErrorOf([&] { open.MoveNext(); }), 3420);
    EXPECT_EQ(ErrorOf([&] { open.RecordCount(); }), 3420);
    EXPECT_EQ(ErrorOf([&] { db.Execute("Delete From Projects"); }), 3420);
    EXPECT_EQ(ErrorOf([&] { db.TableDefs(); }), 3420);
    EXPECT_EQ(ErrorOf([&] { db.Close(); }), 3420);
    EXPECT_EQ(ErrorOf([&] { tables.Count(); }), 3420);
    EXPECT_EQ(ErrorOf([&] { projects.Fields().Count(); }), 3420);
    EXPECT_EQ(ErrorOf([&] { queries("PersPrj"); }), 3420);
    EXPECT_EQ(ErrorOf([&] { persPrj.OpenRecordset(); }), 3420);
    EXPECT_EQ(ErrorOf([&] { Database().OpenRecordset("PersonalData"); }), 3420);
    EXPECT_EQ(ErrorOf([&] { Recordset().MoveFirst(); }), 3420);
}

}  // namespace
}  // namespace zelvo::testing
