#include "synthetic_book.h"

#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "platform/dao/dbengine.h"
#include "platform/dao/jet/jet_sql.h"
#include "support/book_fixture.h"

namespace zelvo::bench {

namespace {

const char* kFirst[] = {"Anna", "Иван", "John", "Мария", "Jürgen", "Олег", "Lucía", "Seán"};
const char* kLast[] = {"Smith", "Иванов", "Müller", "Петрова", "García", "Nguyễn", "O'Brien", "Сидоренко"};

void Check(int rc, sqlite3* db) {
    if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW)
        throw std::runtime_error(std::string("synthetic book: ") + sqlite3_errmsg(db));
}

struct Insert {
    sqlite3* db;
    sqlite3_stmt* stmt = nullptr;
    Insert(sqlite3* d, const char* sql) : db(d) { Check(sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr), db); }
    ~Insert() { sqlite3_finalize(stmt); }
    Insert& Text(int i, const std::string& s) {
        sqlite3_bind_text(stmt, i, s.c_str(), static_cast<int>(s.size()), SQLITE_TRANSIENT);
        return *this;
    }
    Insert& Int(int i, long long v) {
        sqlite3_bind_int64(stmt, i, v);
        return *this;
    }
    void Run() {
        Check(sqlite3_step(stmt), db);
        sqlite3_reset(stmt);
    }
};

}  // namespace

std::string SyntheticEmail(int id) { return "person" + std::to_string(id) + "@example.org"; }

std::string SyntheticFullName(int id) {
    return std::string(kLast[id % 8]) + " " + kFirst[(id / 8) % 8] + " " + std::to_string(id);
}

void CreateSyntheticBook(const std::string& path, const SyntheticBookShape& shape) {
    std::filesystem::remove(path);
    {
        dao::Database db = dao::Engine().CreateDatabase(path);
        testing::CreateBookSchema(db);
        db.Close();
    }
    sqlite3* db = nullptr;
    Check(sqlite3_open(path.c_str(), &db), db);
    Check(dao::jet::RegisterJetRuntime(db), db);
    Check(sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr), db);
    {
        Insert person(db, "INSERT INTO PersonalData(\"Personal ID\", FirstName, MiddleName, SurName, FullName, Comments) "
                          "VALUES(?1, ?2, ?3, ?4, ?5, '')");
        Insert resource(db, "INSERT INTO Resources(\"Resource ID\", ResourceString, ResourceType, ResourceSubType) "
                            "VALUES(?1, ?2, ?3, 0)");
        Insert owner(db, "INSERT INTO ResourcesOwners(\"Resource ID\", \"Owner ID\", OwnerType) VALUES(?1, ?2, 0)");
        Insert project(db, "INSERT INTO Projects(\"Owner ID\", OwnerType, Project, InsArcPrj) VALUES(?1, 0, ?2, 0)");
        Insert employee(db, "INSERT INTO Employees(\"Job ID\", \"Personal ID\", \"Room ID\", Comments) "
                            "VALUES(?1, ?2, 0, '')");
        Insert org(db, "INSERT INTO Organizations(\"Organization ID\", Organization, \"Parent ID\", Comments) "
                       "VALUES(?1, ?2, 0, '')");
        Insert job(db, "INSERT INTO JobTitles(\"Job ID\", \"Organization ID\", JobTitle, Comments) VALUES(?1, ?2, ?3, '')");
        int jobs = shape.organizations * 10;
        for (int o = 1; o <= shape.organizations; ++o) {
            org.Int(1, o).Text(2, "Organization " + std::to_string(o)).Run();
            for (int j = 0; j < 10; ++j) {
                int id = (o - 1) * 10 + j + 1;
                job.Int(1, id).Int(2, o).Text(3, "Job " + std::to_string(j + 1)).Run();
            }
        }
        for (int id = 1; id <= shape.persons; ++id) {
            person.Int(1, id)
                .Text(2, kFirst[(id / 8) % 8])
                .Text(3, "M" + std::to_string(id % 97))
                .Text(4, kLast[id % 8])
                .Text(5, SyntheticFullName(id))
                .Run();
            // Resource 2k-1 is the person's e-mail address, 2k the phone.
            resource.Int(1, 2LL * id - 1).Text(2, SyntheticEmail(id)).Int(3, 2).Run();
            resource.Int(1, 2LL * id).Text(2, "+1 555 " + std::to_string(1000000 + id)).Int(3, 0).Run();
            owner.Int(1, 2LL * id - 1).Int(2, id).Run();
            owner.Int(1, 2LL * id).Int(2, id).Run();
            int group = (id - 1) / shape.projectSize;
            project.Int(1, id).Text(2, group == 0 ? std::string("Big") : "P" + std::to_string(group)).Run();
            employee.Int(1, (id % jobs) + 1).Int(2, id).Run();
        }
    }
    Check(sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr), db);
    sqlite3_close(db);
}

std::string BenchFolder() {
    static std::string folder = [] {
        std::string base = (std::filesystem::temp_directory_path() / "zelvo-bench-XXXXXX").string();
        if (!mkdtemp(base.data())) throw std::runtime_error("cannot make a temporary folder");
        std::atexit([] { std::filesystem::remove_all(BenchFolder()); });
        return base;
    }();
    return folder;
}

}  // namespace zelvo::bench
