// bench_persons [PERSONS]: persons in and out through cAddressbook on a
// generated book (100,000 persons unless told), each beside raw SQLite doing
// the same writes in the same run.
//
//   AddPersonbyStrMail     "\"Иванов, Иван\" <ivan@example.org>" in the
//                          project "Big": the person, the address, its link
//                          and the project row; the card closes at once
//   AddPersonRaw           the anchor: the book opened, the four inserts in
//                          one transaction, the book closed
//   DeletePerson           a person with 20 resources (10 shared with another
//                          person), 5 projects, 2 jobs and 3 photos
//   DeletePersonRaw        the anchor: the book opened, the same deletes and
//                          updates in one transaction, the book closed
//
// Targets: AddPersonbyStrMail <= 5 ms; DeletePerson <= 5 ms and <= 3x raw.
//
// Each call is one transaction, so on a disk the figures are mostly the one
// sync of the file that each side pays; with TMPDIR on a memory file system
// (TMPDIR=/dev/shm bench_persons) what is left is the work itself.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/dao/jet/jet_sql.h"
#include "platform/shell/shell_paths.h"
#include "platform/ui/scripted_host.h"
#include "store/library_state.h"
#include "synthetic_book.h"
#include "zelvo/addressbook.h"

namespace {

using namespace zelvo;

int gPersons = 100000;

// Whether the host showed a message box (the card's window does not count).
bool MessageShown(const ui::ScriptedUiHost& host) {
    for (const auto& s : host.Log())
        if (s.kind == ui::ScriptedUiHost::Shown::MessageBox) return true;
    return false;
}
std::string gFolder;
constexpr long long kVictim = 5000000;      // the person deleted each iteration
constexpr long long kFirstResource = 50000000;  // its resources, 20 from here
const std::string kVictimResources =
    "\"Resource ID\" BETWEEN " + std::to_string(kFirstResource) + " AND " + std::to_string(kFirstResource + 19);

std::string Book() { return gFolder + "/AddressBookW.mdb"; }
std::string N(long long v) { return std::to_string(v); }

void Check(int rc, sqlite3* db, const std::string& what) {
    if (rc != SQLITE_OK && rc != SQLITE_ROW && rc != SQLITE_DONE) {
        std::fprintf(stderr, "bench_persons: %s: %s\n", what.c_str(), sqlite3_errmsg(db));
        std::exit(1);
    }
}

sqlite3* OpenRaw() {
    sqlite3* db = nullptr;
    Check(sqlite3_open(Book().c_str(), &db), db, "open");
    Check(dao::jet::RegisterJetRuntime(db), db, "runtime");
    sqlite3_busy_timeout(db, 5000);
    return db;
}

void Exec(sqlite3* db, const std::string& sql) { Check(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), db, sql); }

// The person kVictim with 20 resources (the odd ones shared with person 1),
// 5 project rows, 2 jobs and 3 photos, written untimed before each deletion.
void BuildVictim() {
    sqlite3* db = OpenRaw();
    Exec(db, "BEGIN");
    Exec(db, "INSERT INTO PersonalData(\"Personal ID\", FullName) VALUES(" + N(kVictim) + ", 'Victim')");
    for (int i = 0; i < 20; ++i) {
        long long r = kFirstResource + i;
        Exec(db, "INSERT INTO Resources(\"Resource ID\", ResourceString, ResourceType) VALUES(" + N(r) + ", 'v" +
                     N(i) + "', " + N(i % 3) + ")");
        Exec(db, "INSERT INTO ResourcesOwners(\"Resource ID\", \"Owner ID\", OwnerType) VALUES(" + N(r) + ", " +
                     N(kVictim) + ", 0)");
        if (i % 2)
            Exec(db, "INSERT INTO ResourcesOwners(\"Resource ID\", \"Owner ID\", OwnerType) VALUES(" + N(r) +
                         ", 1, 0)");
    }
    for (int p = 0; p < 5; ++p)
        Exec(db, "INSERT INTO Projects(\"Owner ID\", OwnerType, Project, InsArcPrj) VALUES(" + N(kVictim) +
                     ", 0, 'V" + N(p) + "', 0)");
    for (int j = 1; j <= 2; ++j)
        Exec(db, "INSERT INTO Employees(\"Job ID\", \"Personal ID\", \"Room ID\") VALUES(" + N(j) + ", " +
                     N(kVictim) + ", 0)");
    for (int f = 0; f < 3; ++f)
        Exec(db, "INSERT INTO Photo(\"Personal ID\", Photo) VALUES(" + N(kVictim) + ", zeroblob(20000))");
    Exec(db, "COMMIT");
    sqlite3_close(db);
}

// What a deletion leaves (the shared rows, the vacancies) is taken away
// untimed, so that every iteration starts alike.
void RemoveLeftovers() {
    sqlite3* db = OpenRaw();
    Exec(db, "BEGIN");
    Exec(db, "DELETE FROM ResourcesOwners WHERE " + kVictimResources);
    Exec(db, "DELETE FROM Resources WHERE " + kVictimResources);
    Exec(db, "DELETE FROM Employees WHERE \"Personal ID\"=0 AND \"Job ID\"<=2 AND \"Employee ID\">" + N(gPersons));
    Exec(db, "COMMIT");
    sqlite3_close(db);
}

bool VictimGone() {
    sqlite3* db = OpenRaw();
    sqlite3_stmt* st = nullptr;
    Check(sqlite3_prepare_v2(db,
                             ("SELECT (SELECT COUNT(*) FROM PersonalData WHERE \"Personal ID\"=" + N(kVictim) +
                              ") + (SELECT COUNT(*) FROM Photo WHERE \"Personal ID\"=" + N(kVictim) +
                              ") + (SELECT COUNT(*) FROM Resources WHERE " + kVictimResources +
                              ") - 10")
                                 .c_str(),
                             -1, &st, nullptr),
          db, "check");
    sqlite3_step(st);
    bool gone = sqlite3_column_int(st, 0) == 0;
    sqlite3_finalize(st);
    sqlite3_close(db);
    return gone;
}

void BM_AddPersonbyStrMail(benchmark::State& state) {
    ui::ScriptedUiHost host;
    ui::ScopedUiHost scope(host);
    cAddressbook book;
    book.AppPath = gFolder;
    book.rProject = "Big";
    for (auto _ : state) {
        std::string mail = "\"Иванов, Иван\" <ivan@example.org>";
        book.AddPersonbyStrMail(mail);
    }
    if (MessageShown(host)) state.SkipWithError("a message was shown");
}

void BM_AddPersonRaw(benchmark::State& state) {
    for (auto _ : state) {
        sqlite3* db = OpenRaw();
        Exec(db, "BEGIN IMMEDIATE");
        Exec(db, "INSERT INTO PersonalData(FullName) VALUES('Иванов, Иван')");
        long long person = sqlite3_last_insert_rowid(db);
        Exec(db, "INSERT INTO Resources(ResourceString, ResourceType) VALUES('ivan@example.org', 2)");
        long long resource = sqlite3_last_insert_rowid(db);
        Exec(db, "INSERT INTO ResourcesOwners(\"Resource ID\", \"Owner ID\", OwnerType) VALUES(" + N(resource) +
                     ", " + N(person) + ", 0)");
        Exec(db, "INSERT INTO Projects(\"Owner ID\", OwnerType, Project, InsArcPrj) VALUES(" + N(person) +
                     ", 0, 'Big', 0)");
        Exec(db, "COMMIT");
        sqlite3_close(db);
    }
}

void BM_DeletePerson(benchmark::State& state) {
    ui::ScriptedUiHost host;
    ui::ScopedUiHost scope(host);
    cAddressbook book;
    book.AppPath = gFolder;
    for (auto _ : state) {
        state.PauseTiming();
        BuildVictim();
        state.ResumeTiming();
        book.DeletePerson(static_cast<std::int32_t>(kVictim));
        state.PauseTiming();
        if (!VictimGone()) state.SkipWithError("the person was not deleted whole");
        RemoveLeftovers();
        state.ResumeTiming();
    }
    if (MessageShown(host)) state.SkipWithError("a message was shown");
}

void BM_DeletePersonRaw(benchmark::State& state) {
    const std::string person = N(kVictim);
    for (auto _ : state) {
        state.PauseTiming();
        BuildVictim();
        state.ResumeTiming();
        sqlite3* db = OpenRaw();
        Exec(db, "BEGIN IMMEDIATE");
        Exec(db, "CREATE TEMP TABLE IF NOT EXISTS gone(id INTEGER PRIMARY KEY)");
        Exec(db, "DELETE FROM gone");
        Exec(db, "INSERT INTO gone SELECT \"Resource ID\" FROM ResourcesOwners WHERE \"Owner ID\"=" + person +
                     " AND (OwnerType=0 OR OwnerType IS NULL)");
        Exec(db, "DELETE FROM ResourcesOwners WHERE \"Owner ID\"=" + person + " AND (OwnerType=0 OR OwnerType IS NULL)");
        Exec(db, "DELETE FROM Resources WHERE \"Resource ID\" IN (SELECT id FROM gone) AND \"Resource ID\" NOT IN "
                 "(SELECT \"Resource ID\" FROM ResourcesOwners WHERE \"Resource ID\" IN (SELECT id FROM gone))");
        Exec(db, "UPDATE Employees SET \"Personal ID\"=0 WHERE \"Personal ID\"=" + person);
        Exec(db, "DELETE FROM Projects WHERE \"Owner ID\"=" + person + " AND OwnerType=0");
        Exec(db, "DELETE FROM Photo WHERE \"Personal ID\"=" + person);
        Exec(db, "DELETE FROM PersonalData WHERE \"Personal ID\"=" + person);
        Exec(db, "COMMIT");
        sqlite3_close(db);
        state.PauseTiming();
        if (!VictimGone()) state.SkipWithError("the raw deletes left rows");
        RemoveLeftovers();
        state.ResumeTiming();
    }
}

}  // namespace

BENCHMARK(BM_AddPersonbyStrMail)->Unit(benchmark::kMillisecond)->Iterations(200);
BENCHMARK(BM_AddPersonRaw)->Unit(benchmark::kMillisecond)->Iterations(200);
BENCHMARK(BM_DeletePerson)->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(BM_DeletePersonRaw)->Unit(benchmark::kMillisecond)->Iterations(50);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc > 1) gPersons = std::atoi(argv[1]);
    if (gPersons <= 0) {
        std::fprintf(stderr, "usage: bench_persons [PERSONS] [benchmark options]\n");
        return 2;
    }
    gFolder = bench::BenchFolder();
    bench::SyntheticBookShape shape;
    shape.persons = gPersons;
    bench::CreateSyntheticBook(Book(), shape);
    AppPath = gFolder;
    ShellPaths().SetAppPath(gFolder);
    // The engine indexes a column the first time a query looks rows up by
    // it on a large table (seconds, once a book); one deletion untimed makes
    // those indexes, which the raw anchor then uses too.
    {
        ui::ScriptedUiHost host;
        ui::ScopedUiHost scope(host);
        cAddressbook book;
        book.AppPath = gFolder;
        BuildVictim();
        book.DeletePerson(static_cast<std::int32_t>(kVictim));
        RemoveLeftovers();
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
