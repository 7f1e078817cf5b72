// bench_card [PERSONS]: the host's ShowPersProp up to a loaded card, on a
// generated book (100,000 persons unless told). The process's host closes a
// window at once, so what is measured is the card's making, the book's
// correction and opening, and the load and read of one person.
//
//   ShowPersProp/AllPersons   a card opened with no project: the person is
//                             looked for among all persons
//   ShowPersProp/InProject    a card opened in the project "Big" (10,000
//                             members): the person through its membership
//   RawSqlite                 the anchor: the same person's row, e-mail
//                             addresses, pages, ICQ numbers, phones, project
//                             rows and photos read with
//                             one prepared statement each (over the same
//                             file, with the indexes the engine made)
//
// Target: ShowPersProp within 20 ms.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/dao/jet/jet_sql.h"
#include "store/library_state.h"
#include "synthetic_book.h"
#include "zelvo/addressbook.h"

namespace {

using namespace zelvo;

int gPersons = 100000;
std::string gFolder;

std::string Book() { return gFolder + "/AddressBookW.mdb"; }

// A person in the middle of the book and of the project "Big".
int Person() { return std::min(gPersons, 5000); }

void ShowPersProp(benchmark::State& state, const std::string& project) {
    cAddressbook book;
    book.AppPath = gFolder;
    book.rProject = project;
    // The first card on a book fresh from the generator pays once for the
    // lookup indexes the engine makes on first use of a column (they stay
    // in the file) and for the book's correction. That opening is shown on
    // its own (first_ms); the timed ones are those a person makes all day.
    auto start = std::chrono::steady_clock::now();
    book.ShowPersProp(Person());
    state.counters["first_ms"] =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    for (auto _ : state) book.ShowPersProp(Person());
}

void BM_ShowPersProp_AllPersons(benchmark::State& state) { ShowPersProp(state, ""); }
void BM_ShowPersProp_InProject(benchmark::State& state) { ShowPersProp(state, "Big"); }

// Steps through every row of `sql` with `id` bound; the count of rows.
int Rows(sqlite3* db, const char* sql, int id) {
    sqlite3_stmt* s = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &s, nullptr) != SQLITE_OK) return -1;
    sqlite3_bind_int(s, 1, id);
    int n = 0;
    while (sqlite3_step(s) == SQLITE_ROW) {
        for (int i = 0; i < sqlite3_column_count(s); ++i) benchmark::DoNotOptimize(sqlite3_column_blob(s, i));
        ++n;
    }
    sqlite3_finalize(s);
    return n;
}

void BM_RawSqlite(benchmark::State& state) {
    for (auto _ : state) {
        sqlite3* db = nullptr;
        if (sqlite3_open_v2(Book().c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
            state.SkipWithError("the book cannot be opened");
            break;
        }
        // The book's text columns are declared with the engine's collation.
        dao::jet::RegisterJetRuntime(db);
        int person = Rows(db, "SELECT * FROM PersonalData WHERE \"Personal ID\" = ?", Person());
        // The e-mail addresses, pages, ICQ numbers and phones, one list each.
        for (const char* kind : {"2", "1", "4", "0"})
            Rows(db,
                 ("SELECT r.* FROM Resources r JOIN ResourcesOwners o ON o.\"Resource ID\" = r.\"Resource ID\" "
                  "WHERE o.\"Owner ID\" = ? AND o.OwnerType = 0 AND r.ResourceType = " +
                  std::string(kind))
                     .c_str(),
                 Person());
        Rows(db, "SELECT * FROM Projects WHERE \"Owner ID\" = ? AND OwnerType = 0", Person());
        Rows(db, "SELECT \"Personal ID\", Photo FROM Photo WHERE \"Personal ID\" = ? ORDER BY \"Photo ID\" DESC",
             Person());
        sqlite3_close(db);
        if (person != 1) {
            state.SkipWithError("the person is not in the book");
            break;
        }
    }
}

}  // namespace

BENCHMARK(BM_ShowPersProp_AllPersons)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(BM_ShowPersProp_InProject)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(BM_RawSqlite)->Unit(benchmark::kMillisecond)->Iterations(20);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc > 1) gPersons = std::atoi(argv[1]);
    if (gPersons <= 0) {
        std::fprintf(stderr, "usage: bench_card [PERSONS] [benchmark options]\n");
        return 2;
    }
    gFolder = zelvo::bench::BenchFolder();
    zelvo::bench::SyntheticBookShape shape;
    shape.persons = gPersons;
    zelvo::bench::CreateSyntheticBook(Book(), shape);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
