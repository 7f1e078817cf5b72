// The book's layout, and how a file of any age is brought to it.
//
// Twelve tables, no keys or relations declared; each identity is a Counter
// (an auto-increment Long), added after its table by "Alter Table … Add
// Column … Counter", so it stands last:
//
//   PersonalData     FirstName, MiddleName, SurName Text(50); FullName,
//                    Comments Text(255) — all may be empty; Personal ID
//   Photo            Personal ID Long, Photo Long Binary; Photo ID
//   Organizations    Organization Text(255), Parent ID Long (0/Null: top
//                    level), Comments Text(255) may be empty; Organization ID
//   JobTitles        Organization ID Long, JobTitle Text(255), Comments; Job ID
//   Employees        Job ID, Personal ID (0: vacancy), Room ID Long, Comments;
//                    Employee ID
//   Rooms            Organization ID Long, RoomName Text(255), IsContainer
//                    Yes/No, rParent ID Long; Room ID
//   PostAddresses    PostIndex, Address Text(50), aParent ID, aType Long;
//                    Address ID
//   AddressesOwners  Address ID, Owner ID Long, OwnerType Long default 0
//   Resources        ResourceString Text(255), ResourceType and
//                    ResourceSubType Long default 0; Resource ID
//   ResourcesOwners  Resource ID, Owner ID, OwnerType Long
//   Projects         Owner ID Long, OwnerType Long default 0, Project
//                    Text(255), InsArcPrj Yes/No
//   PhoneTypes       typeName Text(50); type ID
//
// and two saved queries, OrgPrj and PersPrj, the project rows of
// organizations and of persons.
//
// Earlier versions wrote three other layouts, converted here in place:
//  - E-mail addresses in a table E-MailAdresses (E-mailAdress, Personal ID):
//    it becomes Resources, each row an e-mail resource (type 2) owned by its
//    person through a ResourcesOwners row.
//  - Projects keyed by Personal ID, persons only: the column becomes Owner ID
//    and every row a person's (OwnerType 0).
//  - Organizations whose rows were one person's employer (a Personal ID on
//    the row): each such employer with a name gets a job title without a
//    name held by that person; one without a name is dropped.
//  - PersonalData.InsArcPrj, an archive flag on the person, is dropped.
#include "store/correct_db.h"

#include <sqlite3.h>

#include <filesystem>
#include <optional>

#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/dao/connection.h"
#include "platform/dao/dao_error.h"
#include "platform/dao/dbengine.h"
#include "platform/dao/jet_file/jet_file_reader.h"
#include "platform/shell/file_system.h"
#include "store/book_transaction.h"
#include "store/compress_db.h"
#include "store/library_state.h"

namespace zelvo {

using dao::dbBoolean;
using dao::dbLong;
using dao::dbLongBinary;
using dao::dbText;

namespace {

constexpr const char* kOpenLabel = "zelvo.dll\\Module1\\CorrectDB";
constexpr const char* kLabel = "Module1.CorrectDb";
constexpr const char* kNewBookLocale = ";LANGID=0x0409;CP=1252;COUNTRY=0";
constexpr int kNewBookOptions = 66;  // dbVersion40 + dbEncrypt

CorrectFaultHook& FaultHook() {
    static CorrectFaultHook hook;
    return hook;
}

void Fault(CorrectStep step) {
    if (FaultHook()) FaultHook()(step);
}

struct Column {
    const char* name;
    int type;
    int size;
    bool zeroLength;
};

// `rs` walked from its last row to its first, as every loop of the book does.
template <class F>
void WalkBackward(const OnErrorResumeNext& er, dao::Recordset& rs, F&& each) {
    if (er.Resume([&] { return rs.AbsolutePosition(); }, std::int64_t{-1}) == -1) return;
    er.Do([&] { rs.MoveLast(); });
    std::int64_t n = er.Resume([&] { return rs.RecordCount(); }, std::int64_t{0});
    for (std::int64_t i = 1; i <= n; ++i) {
        Fault(CorrectStep::Row);
        each();
        if (i < n) er.Do([&] { rs.MovePrevious(); });
    }
}

// The table `name` of the file, or a new definition when there is none.
dao::TableDef GetOrCreateTable(const OnErrorResumeNext& er, const dao::Database& db, const std::string& name) {
    dao::TableDef td;
    if (!er.Do([&] { td = db.TableDefs()(name); }) && Err().Number == dao::kItemNotFound)
        er.Do([&] { td = db.CreateTableDef(name); });
    Err().Clear();
    return td;
}

bool SameFile(const std::string& a, const std::string& b) {
    std::error_code ec1, ec2;
    return std::filesystem::weakly_canonical(a, ec1) == std::filesystem::weakly_canonical(b, ec2);
}

// A source to copy the book from: an existing file that is not the book itself.
bool IsSource(const std::string& source, const std::string& path) {
    return shell::FileExists(source) && !SameFile(source, path);
}

// Compacts an earlier book `source` into the book's place; the source stays.
// The copy is written under the temporary name of a compaction and takes the
// book's place by one rename: a copy cut off half-way is never taken for the
// book, and the next run makes it again.
void ConvertFrom(const std::string& source, const std::string& path) {
    frmCompress form = ShowCompressForm();
    const std::string temp = shell::ShellPaths::AddSeparator(shell::ShellPaths::GetParentFolderName(path)) + "~~" +
                             shell::ShellPaths::GetFileName(path);
    try {
        Fault(CorrectStep::Convert);
        RemoveFile(temp);
        DBEngine().CompactDatabase(source, temp, {}, dao::dbVersion40);
        Fault(CorrectStep::Converted);
        // Journal files of an earlier book of this name would be read into
        // the new one.
        RemoveFile(path);
        shell::ReplaceFile(temp, path);
    } catch (...) {
        RemoveFile(temp);
        form.Unload();
        throw;
    }
    form.Unload();
}

// Why the Jet file at `path` did not become a book: CompressDB keeps that to
// itself, and "unrecognized format" alone would leave a person switching
// from an earlier installation guessing. The conversion is tried once more
// into a scratch file to learn its error; `fallback` for any other file.
Error WhyNotConverted(const std::string& path, const Error& fallback) {
    if (dao::jetfile::JetFileFormat(path) == dao::jetfile::JetFormat::NotJet) return fallback;
    const std::string scratch = path + ".converting";
    RemoveFile(scratch);
    try {
        DBEngine().CompactDatabase(path, scratch);
    } catch (const Error& e) {
        RemoveFile(scratch);
        return e;
    }
    RemoveFile(scratch);
    return fallback;
}

// Stage 1. Returns the open book, or nothing when the routine is to end.
dao::Database OpenOrCreate(const std::string& Path) {
    int stage = 0;
    const std::string oldPath = ShellPaths().GetOldDataPath(Path);
    const std::string oldName = OldDatabasePath();
    const std::string oldNameOldPath = ShellPaths().GetOldDataPath(oldName);
    for (;;) {
        dao::Database db;
        if (shell::FileExists(Path)) {
            try {
                db = DBEngine().OpenDatabase(Path, false, false, "Access");
            } catch (const Error& e) {
                if (e.number() == dao::kFileInUse) return {};  // someone holds it alone: not now
                if (e.number() == dao::kUnrecognizedFormat && stage == 0) {
                    CompressDB(Path);
                    stage = 1;
                    continue;
                }
                // Any other failure is reported. So is a file the engine does
                // not take even after a compaction: copying an older book over
                // it or making a new one there would destroy it, and it may be
                // the only copy of someone's data, so it is left as it is.
                ShellPaths().ReportError(e.number() == dao::kUnrecognizedFormat ? WhyNotConverted(Path, e) : e,
                                         kOpenLabel);
                return {};
            }
            if (db.Version() <= "3.0" && stage == 0) {
                db.Close();
                CompressDB(Path);
                stage = 1;
                continue;
            }
            return db;
        }
        if (stage < 2 && IsSource(oldPath, Path)) {
            ConvertFrom(oldPath, Path);
            stage = 2;
            continue;
        }
        if (stage < 3 && IsSource(oldName, Path)) {
            ConvertFrom(oldName, Path);
            stage = 3;
            continue;
        }
        if (stage <= 3 && IsSource(oldNameOldPath, Path)) {
            ConvertFrom(oldNameOldPath, Path);
            stage = 4;
            continue;
        }
        // No source is left: a new, empty book. A new installation may not
        // have made the data folder yet.
        std::string folder = shell::ShellPaths::GetParentFolderName(Path);
        if (!folder.empty() && !shell::FolderExists(folder)) shell::CreateFolder(folder);
        return DBEngine().CreateDatabase(Path, kNewBookLocale, kNewBookOptions);
    }
}

// Stage 5 for one table of plain columns: add what is missing, append a new
// table, give it its Counter.
void CorrectColumns(const OnErrorResumeNext& er, const dao::Database& db, dao::TableDef& td,
                    std::initializer_list<Column> columns, const char* key, const char* counterStatement) {
    for (const Column& c : columns) {
        AddField(td, c.name, c.type, c.size);
        if (c.zeroLength) er.Do([&] { td.Fields()(c.name).SetAllowZeroLength(true); });
    }
    bool hasCounter = key == nullptr || IsCounterField(td, key);
    er.Do([&] { db.TableDefs().Append(td); });
    if (!hasCounter) er.Do([&] { db.Execute(counterStatement); });
}

void CorrectProjects(const OnErrorResumeNext& er, const dao::Database& db, dao::TableDef& td) {
    er.Do([&] { td.Fields()("Personal ID").SetName("Owner ID"); });
    AddField(td, "Owner ID", dbLong);
    AddField(td, "OwnerType", dbLong);
    er.Do([&] { td.Fields()("OwnerType").SetDefaultValue("0"); });
    AddField(td, "Project", dbText, 255);
    AddField(td, "InsArcPrj", dbBoolean);
    // Every row's OwnerType becomes its own ToLong, so an old row (Null)
    // becomes a person's row. Only a Null changes by that, so only those
    // rows are read. This runs each time a card opens: on a large book the
    // engine's lookup index on the column (which the project queries use as
    // well) makes finding none a lookup instead of a read of the table. The
    // query names the one column so that the index alone answers it.
    if (db.IsOpen()) er.Do([&] { db.connection()->EnsureLookupIndex("Projects", "OwnerType"); });
    dao::Recordset rs;
    if (er.Do([&] {
            rs = db.OpenRecordset("Select [OwnerType] From Projects Where [OwnerType] Is Null", dao::dbOpenDynaset);
        })) {
        WalkBackward(er, rs, [&] {
            er.Do([&] {
                rs.Edit();
                rs.SetValue("OwnerType", ValueConv::ToLong(rs("OwnerType")));
                rs.Update();
            });
        });
        er.Do([&] { rs.Close(); });
    }
    er.Do([&] { db.TableDefs().Append(td); });
}

void CorrectOrganizations(const OnErrorResumeNext& er, const dao::Database& db, dao::TableDef& td) {
    er.Do([&] { td.Fields()("Personal ID").SetRequired(false); });
    er.Do([&] { td.Fields()("Parent ID").SetRequired(false); });
    CorrectColumns(er, db, td,
                   {{"Organization", dbText, 255, false}, {"Parent ID", dbLong, 0, false},
                    {"Comments", dbText, 255, true}},
                   "Organization ID", "Alter Table [Organizations] Add Column [Organization ID] Counter");
    er.Do([&] { td.Fields()("Organization").SetRequired(false); });
}

// Stage 3: the old table of e-mail addresses.
void CorrectResources(const OnErrorResumeNext& er, const dao::Database& db, dao::TableDef& owners) {
    dao::TableDef resources;
    if (er.Do([&] { resources = db.TableDefs()("E-MailAdresses"); })) {
        er.Do([&] { resources.SetName("Resources"); });
        er.Do([&] { resources.Fields()("E-mailAdress").SetName("ResourceString"); });
        Fault(CorrectStep::ResourcesRenamed);
        EnsureResourceColumns(resources, db);
        EnsureOwnerColumns(owners, db);
        dao::Recordset rsRes, rsOwn;
        er.Do([&] { rsRes = db.OpenRecordset("Resources", dao::dbOpenTable); });
        er.Do([&] { rsOwn = db.OpenRecordset("ResourcesOwners", dao::dbOpenTable); });
        WalkBackward(er, rsRes, [&] {
            er.Do([&] { rsRes.Edit(); });
            er.Do([&] { rsRes.SetValue("ResourceType", 2); });
            er.Do([&] { rsRes.SetValue("ResourceSubType", 0); });
            er.Do([&] { rsRes.Update(); });
            er.Do([&] { rsOwn.AddNew(); });
            er.Do([&] { rsOwn.SetValue("Owner ID", rsRes("Personal ID")); });
            er.Do([&] { rsOwn.SetValue("OwnerType", 0); });
            er.Do([&] { rsOwn.SetValue("Resource ID", rsRes("Resource ID")); });
            er.Do([&] { rsOwn.Update(); });
        });
        er.Do([&] { rsRes.Close(); });
        er.Do([&] { rsOwn.Close(); });
        er.Do([&] { resources.Fields().Delete("Personal ID"); });
        er.Do([&] { db.TableDefs().Append(resources); });
    } else {
        Err().Clear();
        resources = GetOrCreateTable(er, db, "Resources");
    }
    Err().Clear();
    EnsureResourceColumns(resources, db);
    EnsureOwnerColumns(owners, db);
}

// Stage 6: employers of the earliest layout become job titles.
void CorrectOldOrganizations(const OnErrorResumeNext& er, const dao::Database& db, dao::TableDef& td) {
    if (!er.Do([&] { td.Fields()("Personal ID"); })) return;
    dao::Recordset rsOrg, rsJob, rsEmp;
    er.Do([&] { rsOrg = db.OpenRecordset("Organizations", dao::dbOpenTable); });
    er.Do([&] { rsJob = db.OpenRecordset("JobTitles", dao::dbOpenTable); });
    er.Do([&] { rsEmp = db.OpenRecordset("Employees", dao::dbOpenTable); });
    WalkBackward(er, rsOrg, [&] {
        std::string name = er.Resume([&] { return ValueConv::ToText(rsOrg("Organization")); });
        bool blank = name.find_first_not_of(' ') == std::string::npos;
        if (!blank) {
            er.Do([&] { rsOrg.Edit(); });
            er.Do([&] { rsOrg.SetValue("Parent ID", ValueConv::ToLong(rsOrg("Parent ID"))); });
            std::int32_t jobId = 0;
            er.Do([&] { rsJob.AddNew(); });
            er.Do([&] { rsJob.SetValue("Organization ID", rsOrg("Organization ID")); });
            er.Do([&] { jobId = ValueConv::ToLong(rsJob("Job ID")); });
            er.Do([&] { rsJob.Update(); });
            er.Do([&] { rsEmp.AddNew(); });
            er.Do([&] { rsEmp.SetValue("Job ID", jobId); });
            er.Do([&] { rsEmp.SetValue("Personal ID", rsOrg("Personal ID")); });
            er.Do([&] { rsEmp.Update(); });
            er.Do([&] { rsOrg.Update(); });
        } else {
            er.Do([&] { rsOrg.Delete(); });
        }
    });
    er.Do([&] { rsOrg.Close(); });
    er.Do([&] { rsJob.Close(); });
    er.Do([&] { rsEmp.Close(); });
    er.Do([&] { td.Fields().Delete("Personal ID"); });
    er.Do([&] { db.TableDefs().Append(td); });
    Err().Clear();
}

// Stages 2 to 6, in which a failing statement is passed over.
void CorrectTables(const dao::Database& db) {
    OnErrorResumeNext er("CorrectDB");

    // Stage 2.
    dao::TableDef personal = GetOrCreateTable(er, db, "PersonalData");
    dao::TableDef photo = GetOrCreateTable(er, db, "Photo");
    dao::TableDef projects = GetOrCreateTable(er, db, "Projects");
    dao::TableDef owners = GetOrCreateTable(er, db, "ResourcesOwners");

    // Stage 3.
    CorrectResources(er, db, owners);

    // Stage 4.
    dao::TableDef organizations = GetOrCreateTable(er, db, "Organizations");
    dao::TableDef employees = GetOrCreateTable(er, db, "Employees");
    dao::TableDef jobTitles = GetOrCreateTable(er, db, "JobTitles");
    dao::TableDef phoneTypes = GetOrCreateTable(er, db, "PhoneTypes");
    dao::TableDef rooms = GetOrCreateTable(er, db, "Rooms");
    dao::TableDef postAddresses = GetOrCreateTable(er, db, "PostAddresses");
    dao::TableDef addressesOwners = GetOrCreateTable(er, db, "AddressesOwners");

    // Stage 5.
    Fault(CorrectStep::Columns);
    CorrectColumns(er, db, postAddresses,
                   {{"PostIndex", dbText, 50, false}, {"Address", dbText, 50, false},
                    {"aParent ID", dbLong, 0, false}, {"aType", dbLong, 0, false}},
                   "Address ID", "Alter Table PostAddresses Add Column [Address ID] Counter");

    AddField(addressesOwners, "Address ID", dbLong);
    AddField(addressesOwners, "Owner ID", dbLong);
    AddField(addressesOwners, "OwnerType", dbLong);
    er.Do([&] { addressesOwners.Fields()("OwnerType").SetDefaultValue("0"); });
    er.Do([&] { db.TableDefs().Append(addressesOwners); });

    CorrectColumns(er, db, rooms,
                   {{"Organization ID", dbLong, 0, false}, {"RoomName", dbText, 255, false},
                    {"IsContainer", dbBoolean, 0, false}, {"rParent ID", dbLong, 0, false}},
                   "Room ID", "Alter Table Rooms Add Column [Room ID] Counter");
    CorrectColumns(er, db, phoneTypes, {{"typeName", dbText, 50, false}}, "type ID",
                   "Alter Table PhoneTypes Add Column [type ID] Counter");
    CorrectColumns(er, db, jobTitles,
                   {{"Organization ID", dbLong, 0, false}, {"JobTitle", dbText, 255, false},
                    {"Comments", dbText, 255, true}},
                   "Job ID", "Alter Table JobTitles Add Column [Job ID] Counter");
    CorrectColumns(er, db, employees,
                   {{"Job ID", dbLong, 0, false}, {"Personal ID", dbLong, 0, false}, {"Room ID", dbLong, 0, false},
                    {"Comments", dbText, 255, true}},
                   "Employee ID", "Alter Table Employees Add Column [Employee ID] Counter");

    er.Do([&] { personal.Fields().Delete("InsArcPrj"); });
    CorrectColumns(er, db, personal,
                   {{"FirstName", dbText, 50, true}, {"MiddleName", dbText, 50, true}, {"SurName", dbText, 50, true},
                    {"FullName", dbText, 255, true}, {"Comments", dbText, 255, true}},
                   "Personal ID", "Alter Table PersonalData Add Column [Personal ID] Counter");
    CorrectColumns(er, db, photo, {{"Personal ID", dbLong, 0, false}, {"Photo", dbLongBinary, 0, false}},
                   "Photo ID", "Alter Table Photo Add Column [Photo ID] Counter");
    CorrectProjects(er, db, projects);
    CorrectOrganizations(er, db, organizations);

    // Stage 6.
    Fault(CorrectStep::OldOrganizations);
    CorrectOldOrganizations(er, db, organizations);
}

}  // namespace

void RemoveFile(const std::string& Path) {
    OnErrorResumeNext er("RemoveFile");
    // The book's journal files belong to it: left behind, they would be
    // read into whatever file takes the name next.
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
        std::string file = Path + suffix;
        if (!shell::FileExists(file)) continue;
        er.Do([&] { shell::SetAttributes(file, shell::kNormal); });
        er.Do([&] { shell::DeleteFile(file); });
    }
}

void AddField(dao::TableDef& td, const std::string& Name, int Type, int Size) {
    OnErrorResumeNext er("AddField");
    dao::Field existing;
    if (er.Do([&] { existing = td.Fields()(Name); })) {
        bool present = er.Resume(
            [&] { return existing.Type() == Type && (Type != dbText || existing.Size() == Size); }, false);
        // Another type or size: the append below fails and the column
        // stays as it is.
        if (present) return;
    }
    er.Do([&] {
        dao::Field f = Type == dbText ? td.CreateField(Name, Type, Size) : td.CreateField(Name, Type);
        td.Fields().Append(f);
    });
}

bool IsCounterField(const dao::TableDef& td, const std::string& Name) {
    try {
        dao::Field f = td.Fields()(Name);
        return (f.Attributes() & dao::dbAutoIncrField) != 0 && f.Type() == dbLong;
    } catch (const Error&) {
        return false;
    }
}

void EnsureResourceColumns(dao::TableDef& td, const dao::Database& db) {
    OnErrorResumeNext er("EnsureResourceColumns");
    AddField(td, "ResourceString", dbText, 255);
    AddField(td, "ResourceType", dbLong);
    er.Do([&] { td.Fields()("ResourceType").SetDefaultValue("0"); });
    AddField(td, "ResourceSubType", dbLong);
    er.Do([&] { td.Fields()("ResourceSubType").SetDefaultValue("0"); });
    er.Do([&] { db.TableDefs().Append(td); });
    if (!IsCounterField(td, "Resource ID"))
        er.Do([&] { db.Execute("Alter Table [Resources] Add Column [Resource ID] Counter"); });
}

void EnsureOwnerColumns(dao::TableDef& td, const dao::Database& db) {
    OnErrorResumeNext er("EnsureOwnerColumns");
    AddField(td, "Resource ID", dbLong);
    AddField(td, "Owner ID", dbLong);
    AddField(td, "OwnerType", dbLong);
    er.Do([&] { db.TableDefs().Append(td); });
}

void EnsureSavedQuery(const dao::Database& db, const std::string& Name, const std::string& SQL) {
    std::string found;
    {
        OnErrorResumeNext er("EnsureSavedQuery");
        found = er.Resume([&] { return db.QueryDefs()(Name).Name(); });
    }
    if (!found.empty()) {
        dao::QueryDef q = db.QueryDefs()(Name);
        // The same text again would only rebuild the query for nothing.
        if (q.SQL() != SQL) q.SetSQL(SQL);
    } else {
        db.QueryDefs().Append(db.CreateQueryDef(Name, SQL));
    }
}

CorrectFaultHook SetCorrectFaultHook(CorrectFaultHook hook) {
    return std::exchange(FaultHook(), std::move(hook));
}

void CorrectDB(std::string& Path) {
    try {
        if (Path.empty()) Path = DatabasePath();
        dao::Database db = OpenOrCreate(Path);
        if (!db.IsOpen()) return;
        {
            std::optional<BookTransaction> transaction;
            try {
                transaction.emplace(db);
            } catch (const Error& e) {
                // Someone is writing to the book for longer than a lock is
                // waited for: it is corrected at its next opening.
                RecordSwallowed(e, kLabel);
                Err().Clear();
                db.Close();
                return;
            }
            Fault(CorrectStep::Stages);
            CorrectTables(db);
            // Stage 7.
            Fault(CorrectStep::Queries);
            EnsureSavedQuery(db, "OrgPrj", "Select * from Projects Where Projects.OwnerType=1;");
            EnsureSavedQuery(db, "PersPrj", "Select * from Projects Where Projects.OwnerType=0;");
            Fault(CorrectStep::Commit);
            transaction->Commit();
        }
        Fault(CorrectStep::Committed);
        // Stage 8.
        db.Close();
        shell::SetAttributes(Path, shell::kHidden);
        Fault(CorrectStep::Hidden);
    } catch (const Error& e) {
        ShellPaths().ReportError(e, kLabel);
        Err().Clear();
    }
}

}  // namespace zelvo
