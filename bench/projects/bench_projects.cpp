// bench_projects: the host's folder events and the archive on a large book,
// each beside raw SQLite doing the same row work in the same run.
//
// The book: 100,000 persons and about 20,000 organization objects
// (organizations and their job titles), each filed once on the live side
// and once in the archive, over 5,000 projects N1, N1\N6, ... in a tree of
// five children a project and depth up to 6. The live subtree of N1 holds
// exactly 20,000 rows (persons 1..20,000); every other row lies elsewhere.
//
//   Moved/zelvo, Moved/raw      rProjectMoved of N1 to M1 and back; raw: one
//                               UPDATE with SQLite's own LIKE and substr
//   Copied/zelvo, Copied/raw    rProjectCopied of N1 onto C1, which already
//                               holds half the objects; raw: INSERT ...
//                               SELECT ... LEFT JOIN (the rows missing). Each run checks
//                               that C1 ends with 20,000 rows, none twice.
//   Deleted/zelvo, Deleted/raw  rProjectDeleted of N1 (put back between runs)
//   Archive50/zelvo, /raw       PrjArcPrj2 of an organization filed in 50
//                               projects, to the archive and back; raw: one
//                               UPDATE of its rows
//
// Targets: Moved within 1.5x raw and 150 ms; Copied within 2x raw; Deleted
// within 1.5x raw; Archive50 within 5 ms.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/dao/jet/jet_sql.h"
#include "store/library_state.h"
#include "synthetic_book.h"
#include "zelvo/addressbook.h"

namespace {

using namespace zelvo;

constexpr int kPersons = 100000;
constexpr int kOrganizations = 1819;  // and ten job titles each: 20,009 objects
constexpr int kProjects = 5000;
constexpr int kSubtreeRows = 20000;
constexpr int kArchivedOrg = 1;  // the organization filed in 50 projects

std::string gFolder;
std::string Book() { return gFolder + "/AddressBookW.mdb"; }

sqlite3* OpenRaw() {
    sqlite3* db = nullptr;
    sqlite3_open(Book().c_str(), &db);
    // The book's text columns are declared with the engine's collation.
    dao::jet::RegisterJetRuntime(db);
    return db;
}

void Exec(sqlite3* db, const std::string& sql) {
    char* message = nullptr;
    if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        std::fprintf(stderr, "bench_projects: %s\n  in %s\n", message ? message : "?", sql.c_str());
        sqlite3_free(message);
        std::exit(1);
    }
}

long long Count(sqlite3* db, const std::string& sql) {
    sqlite3_stmt* s = nullptr;
    sqlite3_prepare_v2(db, sql.c_str(), -1, &s, nullptr);
    long long n = sqlite3_step(s) == SQLITE_ROW ? sqlite3_column_int64(s, 0) : -1;
    sqlite3_finalize(s);
    return n;
}

// The path of project i (1..kProjects) of a tree of five children each.
std::string PathOf(int i) { return i <= 5 ? "N" + std::to_string(i) : PathOf((i - 6) / 5 + 1) + "\\N" + std::to_string(i); }
bool InN1(int i) { return i == 1 || (i > 5 && InN1((i - 6) / 5 + 1)); }

void FileTheObjects() {
    sqlite3* db = OpenRaw();
    Exec(db, "BEGIN");
    Exec(db, "DELETE FROM Projects");
    std::vector<std::string> inside, outside, all;
    for (int i = 1; i <= kProjects; ++i) {
        (InN1(i) ? inside : outside).push_back(PathOf(i));
        all.push_back(PathOf(i));
    }
    sqlite3_stmt* add = nullptr;
    sqlite3_prepare_v2(db, "INSERT INTO Projects(\"Owner ID\", OwnerType, Project, InsArcPrj) VALUES(?1, ?2, ?3, ?4)",
                       -1, &add, nullptr);
    auto file = [&](int id, int type, const std::string& path, bool archive) {
        sqlite3_bind_int(add, 1, id);
        sqlite3_bind_int(add, 2, type);
        sqlite3_bind_text(add, 3, path.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(add, 4, archive ? -1 : 0);
        sqlite3_step(add);
        sqlite3_reset(add);
    };
    int n = 0;
    auto both = [&](int id, int type) {
        ++n;
        file(id, type, n <= kSubtreeRows ? inside[n % inside.size()] : outside[n % outside.size()], false);
        file(id, type, all[n % all.size()], true);
    };
    for (int id = 1; id <= kPersons; ++id) both(id, 0);
    for (int id = 1; id <= kOrganizations; ++id) both(id, 1);
    for (int id = 1; id <= kOrganizations * 10; ++id) both(id, 2);
    for (int k = 0; k < 50; ++k) file(kArchivedOrg, 1, outside[(k * 37) % outside.size()] + "\\A" + std::to_string(k), false);
    sqlite3_finalize(add);
    Exec(db, "COMMIT");
    sqlite3_close(db);
}

const char* kRawSubtree = "InsArcPrj = 0 AND (Project || '\\') LIKE ";

void MovedZelvo(benchmark::State& state) {
    cAddressbook book;
    book.AppPath = gFolder;
    bool there = false;
    for (auto _ : state) {
        book.rProjectMoved(there ? "M1" : "N1", false, there ? "N1" : "M1", false);
        there = !there;
    }
    if (there) book.rProjectMoved("M1", false, "N1", false);
}

void MovedRaw(benchmark::State& state) {
    sqlite3* db = OpenRaw();
    bool there = false;
    for (auto _ : state) {
        std::string from = there ? "M1" : "N1", to = there ? "N1" : "M1";
        Exec(db, "UPDATE Projects SET Project = '" + to + "' || substr(Project, 3), InsArcPrj = 0 WHERE " +
                     kRawSubtree + "'" + from + "\\%'");
        there = !there;
    }
    if (there) Exec(db, "UPDATE Projects SET Project = 'N1' || substr(Project, 3) WHERE " + std::string(kRawSubtree) + "'M1\\%'");
    sqlite3_close(db);
}

// C1 gets the rows of every second object of N1's subtree, as the copy
// would make them.
void ResetCopy(sqlite3* db) {
    Exec(db, "DELETE FROM Projects WHERE " + std::string(kRawSubtree) + "'C1\\%'");
    Exec(db, "INSERT INTO Projects(\"Owner ID\", OwnerType, Project, InsArcPrj) SELECT \"Owner ID\", OwnerType, "
             "'C1' || substr(Project, 3), 0 FROM Projects WHERE " + std::string(kRawSubtree) +
                 "'N1\\%' AND \"Owner ID\" % 2 = 0");
}

bool CopyIsWhole(sqlite3* db) {
    std::string c1 = std::string(kRawSubtree) + "'C1\\%'";
    return Count(db, "SELECT count(*) FROM Projects WHERE " + c1) == kSubtreeRows &&
           Count(db, "SELECT count(*) FROM (SELECT DISTINCT \"Owner ID\", OwnerType, Project FROM Projects WHERE " +
                         c1 + ")") == kSubtreeRows;
}

void Copied(benchmark::State& state, bool raw) {
    cAddressbook book;
    book.AppPath = gFolder;
    sqlite3* db = OpenRaw();
    for (auto _ : state) {
        state.PauseTiming();
        ResetCopy(db);
        state.ResumeTiming();
        if (raw) {
            Exec(db, "INSERT INTO Projects(\"Owner ID\", OwnerType, Project, InsArcPrj) SELECT s.\"Owner ID\", "
                     "s.OwnerType, 'C1' || substr(s.Project, 3), 0 FROM Projects s LEFT JOIN Projects d ON "
                     "d.InsArcPrj = 0 AND d.\"Owner ID\" = s.\"Owner ID\" AND d.OwnerType = s.OwnerType AND "
                     "d.Project = 'C1' || substr(s.Project, 3) WHERE s.InsArcPrj = 0 AND "
                     "(s.Project || '\\') LIKE 'N1\\%' AND d.\"Owner ID\" IS NULL");
        } else {
            book.rProjectCopied("N1", "C1", false, false);
        }
        state.PauseTiming();
        if (!CopyIsWhole(db)) {
            state.SkipWithError("the copy did not give every object of the subtree once");
            break;
        }
        state.ResumeTiming();
    }
    Exec(db, "DELETE FROM Projects WHERE " + std::string(kRawSubtree) + "'C1\\%'");
    sqlite3_close(db);
}

void Deleted(benchmark::State& state, bool raw) {
    cAddressbook book;
    book.AppPath = gFolder;
    sqlite3* db = OpenRaw();
    Exec(db, "CREATE TEMP TABLE kept AS SELECT * FROM Projects WHERE " + std::string(kRawSubtree) + "'N1\\%'");
    for (auto _ : state) {
        if (raw) {
            Exec(db, "DELETE FROM Projects WHERE " + std::string(kRawSubtree) + "'N1\\%'");
        } else {
            book.rProjectDeleted("N1", false, 1);
        }
        state.PauseTiming();
        bool gone = Count(db, "SELECT count(*) FROM Projects WHERE " + std::string(kRawSubtree) + "'N1\\%'") == 0;
        Exec(db, "INSERT INTO Projects SELECT * FROM kept");
        if (!gone) {
            state.SkipWithError("rows of the subtree were left");
            break;
        }
        state.ResumeTiming();
    }
    sqlite3_close(db);
}

void Archive50(benchmark::State& state, bool raw) {
    cAddressbook book;
    book.AppPath = gFolder;
    sqlite3* db = OpenRaw();
    bool side = false;
    // The engine indexes the columns a query looks values up in the first
    // time it runs on a book; a book in use has these indexes. One round
    // trip before the runs makes them, so that both sides are timed alike.
    if (!raw) {
        book.PrjArcPrj2(kArchivedOrg, 1, nullptr, nullptr, side);
        book.PrjArcPrj2(kArchivedOrg, 1, nullptr, nullptr, side);
    }
    for (auto _ : state) {
        if (raw) {
            Exec(db, "UPDATE Projects SET InsArcPrj = " + std::string(side ? "0" : "-1") +
                         " WHERE \"Owner ID\" = 1 AND OwnerType = 1");
            side = !side;
        } else {
            book.PrjArcPrj2(kArchivedOrg, 1, nullptr, nullptr, side);
        }
    }
    if (Count(db, "SELECT count(*) FROM Projects WHERE \"Owner ID\" = 1 AND OwnerType = 1 AND InsArcPrj = " +
                      std::string(side ? "-1" : "0")) != 52)
        state.SkipWithError("the object's rows are not all on one side");
    if (side) Exec(db, "UPDATE Projects SET InsArcPrj = 0 WHERE \"Owner ID\" = 1 AND OwnerType = 1");
    sqlite3_close(db);
}

void BM_Moved_zelvo(benchmark::State& s) { MovedZelvo(s); }
void BM_Moved_raw(benchmark::State& s) { MovedRaw(s); }
void BM_Copied_zelvo(benchmark::State& s) { Copied(s, false); }
void BM_Copied_raw(benchmark::State& s) { Copied(s, true); }
void BM_Deleted_zelvo(benchmark::State& s) { Deleted(s, false); }
void BM_Deleted_raw(benchmark::State& s) { Deleted(s, true); }
void BM_Archive50_zelvo(benchmark::State& s) { Archive50(s, false); }
void BM_Archive50_raw(benchmark::State& s) { Archive50(s, true); }

}  // namespace

BENCHMARK(BM_Moved_zelvo)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(BM_Moved_raw)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(BM_Copied_zelvo)->Unit(benchmark::kMillisecond)->Iterations(6);
BENCHMARK(BM_Copied_raw)->Unit(benchmark::kMillisecond)->Iterations(6);
BENCHMARK(BM_Deleted_zelvo)->Unit(benchmark::kMillisecond)->Iterations(6);
BENCHMARK(BM_Deleted_raw)->Unit(benchmark::kMillisecond)->Iterations(6);
BENCHMARK(BM_Archive50_zelvo)->Unit(benchmark::kMillisecond)->Iterations(40);
BENCHMARK(BM_Archive50_raw)->Unit(benchmark::kMillisecond)->Iterations(40);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    gFolder = zelvo::bench::BenchFolder();
    zelvo::bench::SyntheticBookShape shape;
    shape.persons = kPersons;
    shape.projectSize = kPersons;
    shape.organizations = kOrganizations;
    zelvo::bench::CreateSyntheticBook(Book(), shape);
    FileTheObjects();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
