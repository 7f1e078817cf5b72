#include "test_book.h"

#include <stdexcept>

#include "platform/core/variant.h"

namespace zelvo::dao::jet::testing {

namespace {

// The schema of the book, in the column order a new table gets.
constexpr const char* kSchema = R"sql(
CREATE TABLE "PersonalData" ("FirstName" TEXT COLLATE JET, "MiddleName" TEXT COLLATE JET,
  "SurName" TEXT COLLATE JET, "FullName" TEXT COLLATE JET, "Comments" TEXT COLLATE JET,
  "Personal ID" INTEGER PRIMARY KEY AUTOINCREMENT);
CREATE TABLE "Photo" ("Personal ID" INTEGER, "Photo" BLOB, "Photo ID" INTEGER PRIMARY KEY AUTOINCREMENT);
CREATE TABLE "Organizations" ("Organization" TEXT COLLATE JET, "Parent ID" INTEGER,
  "Comments" TEXT COLLATE JET, "Organization ID" INTEGER PRIMARY KEY AUTOINCREMENT);
CREATE TABLE "JobTitles" ("Organization ID" INTEGER, "JobTitle" TEXT COLLATE JET,
  "Comments" TEXT COLLATE JET, "Job ID" INTEGER PRIMARY KEY AUTOINCREMENT);
CREATE TABLE "Employees" ("Job ID" INTEGER, "Personal ID" INTEGER, "Room ID" INTEGER,
  "Comments" TEXT COLLATE JET, "Employee ID" INTEGER PRIMARY KEY AUTOINCREMENT);
CREATE TABLE "Rooms" ("Organization ID" INTEGER, "RoomName" TEXT COLLATE JET, "IsContainer" INTEGER,
  "rParent ID" INTEGER, "Room ID" INTEGER PRIMARY KEY AUTOINCREMENT);
CREATE TABLE "PostAddresses" ("PostIndex" TEXT COLLATE JET, "Address" TEXT COLLATE JET,
  "aParent ID" INTEGER, "aType" INTEGER, "Address ID" INTEGER PRIMARY KEY AUTOINCREMENT);
CREATE TABLE "AddressesOwners" ("Address ID" INTEGER, "Owner ID" INTEGER, "OwnerType" INTEGER DEFAULT 0);
CREATE TABLE "Resources" ("ResourceString" TEXT COLLATE JET, "ResourceType" INTEGER DEFAULT 0,
  "ResourceSubType" INTEGER DEFAULT 0, "Resource ID" INTEGER PRIMARY KEY AUTOINCREMENT);
CREATE TABLE "ResourcesOwners" ("Resource ID" INTEGER, "Owner ID" INTEGER, "OwnerType" INTEGER);
CREATE TABLE "Projects" ("Owner ID" INTEGER, "OwnerType" INTEGER DEFAULT 0, "Project" TEXT COLLATE JET,
  "InsArcPrj" INTEGER);
CREATE TABLE "PhoneTypes" ("typeName" TEXT COLLATE JET, "type ID" INTEGER PRIMARY KEY AUTOINCREMENT);
)sql";

// The rows. Persons: 1 Cyrillic, in project A and in the archive; 2 in the
// subproject A\Sub; 3 in the sibling AB; 4 in no project (unsorted); 5 only
// in the archive, with a double quote in the name.
constexpr const char* kRows = R"sql(
INSERT INTO "PersonalData" VALUES ('Иванов','Иван','Иванович','ИВАНОВ Иван',NULL,1);
INSERT INTO "PersonalData" VALUES ('Smith','John','','John Smith',NULL,2);
INSERT INTO "PersonalData" VALUES ('Doe','Jane',NULL,'Jane Doe',NULL,3);
INSERT INTO "PersonalData" VALUES ('Brown','Bob','','Bob Brown',NULL,4);
INSERT INTO "PersonalData" VALUES ('O"Hara','Scarlett',NULL,'Scarlett O"Hara',NULL,5);
INSERT INTO "Projects" VALUES (1,0,'C:\Prj\A',0), (2,0,'C:\Prj\A\Sub',0), (3,0,'C:\Prj\AB',0),
  (1,0,'C:\Arc\Old',-1), (5,0,'C:\Arc\Old',-1), (1,0,'C:\Prj\B',0), (1,1,'C:\Prj\A',0), (1,2,'C:\Prj\A',0), (1,4,'C:\Prj\A',0);
INSERT INTO "Organizations" VALUES ('Acme',NULL,NULL,1), ('Acme Sales',1,NULL,2), ('Globex',0,NULL,3),
  ('Globex R&D',3,NULL,4);
INSERT INTO "JobTitles" VALUES (2,'Manager',NULL,1), (4,'Engineer',NULL,2), (1,'Director',NULL,3);
INSERT INTO "Employees" VALUES (1,1,2,NULL,1), (2,2,0,NULL,2), (3,0,NULL,NULL,3);
INSERT INTO "Rooms" VALUES (1,'Building 1',-1,NULL,1), (1,'Room 101',0,1,2), (1,'Annex',-1,0,3);
INSERT INTO "PostAddresses" VALUES (NULL,'Russia',NULL,0,1), ('101000','Moscow',1,2,2),
  ('','Tverskaya',2,3,3), ('','House 7',3,4,4), (NULL,'USA',0,0,5);
INSERT INTO "AddressesOwners" VALUES (4,1,0), (4,2,0), (2,1,1);
INSERT INTO "Resources" VALUES ('ivanov@example.ru',2,0,1), ('+7 495 000',0,0,2), ('john@example.com',2,0,3),
  ('555-HOME',0,0,4), ('http://acme.example',1,0,5), ('a49b@x.org',2,0,6), ('sales@acme.example',2,0,7),
  ('director@acme.example',2,0,8);
INSERT INTO "ResourcesOwners" VALUES (1,1,0), (2,1,0), (3,2,NULL), (4,4,8), (5,1,1), (7,1,4), (6,3,0),
  (8,1,2);
INSERT INTO "Photo" VALUES (1,x'01',1), (1,x'0203',2), (2,x'04',3);
)sql";

}  // namespace

const char* TestBookRows() { return kRows; }

std::optional<CatalogObject> SqliteCatalog::Find(std::string_view name) const {
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db_,
                       "SELECT name, type FROM sqlite_master WHERE type IN ('table','view') AND name = ?1 "
                       "COLLATE NOCASE",
                       -1, &st, nullptr);
    sqlite3_bind_text(st, 1, name.data(), static_cast<int>(name.size()), SQLITE_TRANSIENT);
    std::optional<CatalogObject> obj;
    if (sqlite3_step(st) == SQLITE_ROW) {
        obj.emplace();
        obj->name = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
        obj->isQuery = std::string_view(reinterpret_cast<const char*>(sqlite3_column_text(st, 1))) == "view";
    }
    sqlite3_finalize(st);
    if (!obj) return obj;
    std::string q = "SELECT name FROM pragma_table_info(?1)";
    sqlite3_prepare_v2(db_, q.c_str(), -1, &st, nullptr);
    sqlite3_bind_text(st, 1, obj->name.c_str(), -1, SQLITE_TRANSIENT);
    while (sqlite3_step(st) == SQLITE_ROW)
        obj->columns.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
    sqlite3_finalize(st);
    return obj;
}

TestBook::TestBook() : catalog_(nullptr) {
    if (sqlite3_open(":memory:", &db_) != SQLITE_OK) throw std::runtime_error("cannot open SQLite");
    catalog_ = SqliteCatalog(db_);
    sqlite3_db_config(db_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(db_, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    if (RegisterJetRuntime(db_) != SQLITE_OK) throw std::runtime_error("cannot register the Jet runtime");
    Exec(kSchema);
    Exec(kRows);
    for (auto [name, sql] : {std::pair{"OrgPrj", "Select * from Projects Where Projects.OwnerType=1;"},
                             std::pair{"PersPrj", "Select * from Projects Where Projects.OwnerType=0;"}}) {
        Translation view = TranslateView(Parameterize(sql), catalog_);
        Exec(std::string("CREATE VIEW \"") + name + "\" AS " + view.sql);
    }
}

TestBook::~TestBook() { sqlite3_close(db_); }

void TestBook::Exec(const std::string& sql) const {
    char* err = nullptr;
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &err) != SQLITE_OK) {
        std::string msg = err ? err : "?";
        sqlite3_free(err);
        throw std::runtime_error("SQLite: " + msg + " in: " + sql);
    }
}

namespace {

std::vector<std::string> Rows(sqlite3* db, sqlite3_stmt* st, int visible) {
    std::vector<std::string> rows;
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
        std::string row;
        for (int c = 0; c < visible; ++c) {
            if (c) row += "|";
            switch (sqlite3_column_type(st, c)) {
            case SQLITE_NULL: row += "<null>"; break;
            case SQLITE_BLOB: row += "<" + std::to_string(sqlite3_column_bytes(st, c)) + " bytes>"; break;
            default: row += reinterpret_cast<const char*>(sqlite3_column_text(st, c));
            }
        }
        rows.push_back(std::move(row));
    }
    if (rc != SQLITE_DONE) {
        std::string msg = sqlite3_errmsg(db);
        sqlite3_finalize(st);
        throw std::runtime_error("SQLite step: " + msg);
    }
    sqlite3_finalize(st);
    return rows;
}

}  // namespace

Result TestBook::Run(std::string_view jetSql) const {
    Shape shape = Parameterize(jetSql);
    Translation tr = TranslateStatement(shape, catalog_);
    Result r;
    for (const OutputColumn& c : tr.columns) r.columns.push_back(c.name);
    r.hidden = tr.hiddenRowids;
    if (tr.sql.empty()) return r;  // DDL: the engine's part
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db_, tr.sql.c_str(), -1, &st, nullptr) != SQLITE_OK)
        throw std::runtime_error("SQLite prepare: " + std::string(sqlite3_errmsg(db_)) + " in: " + tr.sql);
    BindLiterals(st, shape);
    r.rows = Rows(db_, st, static_cast<int>(tr.columns.size()));
    return r;
}

std::vector<std::string> TestBook::Find(std::string_view baseSql, std::string_view criteria) const {
    Shape base = Parameterize(baseSql);
    Translation tr = TranslateStatement(base, catalog_);
    std::vector<std::string> fields;
    for (const OutputColumn& c : tr.columns) fields.push_back(c.name);
    Shape crit = Parameterize(criteria);
    CriteriaTranslation ct = TranslateCriteria(crit, fields);
    // The row source: the query with its fields renamed f0, f1, …; the
    // criteria's literals come after the query's.
    std::string inner = "SELECT ";
    for (std::size_t k = 0; k < fields.size(); ++k)
        inner += (k ? ", " : "") + std::string("q.\"") + fields[k] + "\" AS \"f" + std::to_string(k) + "\"";
    // Renumber the criteria's parameters past the query's.
    std::string where;
    int offset = static_cast<int>(base.literals.size());
    for (std::size_t i = 0; i < ct.sql.size(); ++i) {
        if (ct.sql[i] == '?') {
            std::size_t j = i + 1;
            while (j < ct.sql.size() && isdigit(static_cast<unsigned char>(ct.sql[j]))) ++j;
            where += "?" + std::to_string(std::stoi(ct.sql.substr(i + 1, j - i - 1)) + offset);
            i = j - 1;
        } else {
            where += ct.sql[i];
        }
    }
    std::string sql = "SELECT * FROM (" + inner + " FROM (" + tr.sql + ") AS q) WHERE " + where;
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &st, nullptr) != SQLITE_OK)
        throw std::runtime_error("SQLite prepare: " + std::string(sqlite3_errmsg(db_)) + " in: " + sql);
    BindLiterals(st, base);
    BindLiterals(st, crit, offset);
    return Rows(db_, st, static_cast<int>(fields.size()));
}

}  // namespace zelvo::dao::jet::testing
