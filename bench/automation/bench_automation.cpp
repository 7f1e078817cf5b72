// bench_automation [PERSONS]: cAddressbook.Navigate filling a host's list
// with the members of one project that holds every person of a generated
// book (100,000 unless told), beside the same rows read with SQLite's C API.
//
//   Navigate/names        a list of one column: names only, no extra query
//   Navigate/emails       a list of three columns: the type text and each
//                         person's first e-mail address, one query a person
//   RawSqlite/names       the project's members by one prepared SELECT
//   RawSqlite/emails      the same, and one prepared e-mail SELECT a person
//                         (bound, stepped once, reset)
//
// Targets: Navigate/names within 300 ms, Navigate/emails within 1.5 s.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/dao/jet/jet_sql.h"
#include "store/library_state.h"
#include "synthetic_book.h"
#include "zelvo/addressbook.h"

namespace {

using namespace zelvo;

int gPersons = 100000;
std::string gFolder;

std::string Book() { return gFolder + "/AddressBookW.mdb"; }

void Navigate(benchmark::State& state, int columns) {
    cAddressbook book;
    book.AppPath = gFolder;
    book.rProject = "Big";
    book.Flags2 = ShowPersons;
    int reports = ShellPaths().ReportCount();
    for (auto _ : state) {
        ui::ListView list;
        list.SetView(ui::lvwReport);
        for (int i = 0; i < columns; ++i) list.ColumnHeaders().Add("c");
        book.Navigate(&list, nullptr);
        if (list.ListItems().Count() != gPersons || ShellPaths().ReportCount() != reports) {
            state.SkipWithError("Navigate did not list every person");
            break;
        }
        if (columns > 2 && list.ListItems().Item(1).SubItems(2).empty()) {
            state.SkipWithError("no e-mail address in the list");
            break;
        }
        benchmark::DoNotOptimize(list);
    }
    state.counters["rows"] = gPersons;
}

void BM_Navigate_names(benchmark::State& state) { Navigate(state, 1); }
void BM_Navigate_emails(benchmark::State& state) { Navigate(state, 3); }

struct Row {
    std::int64_t id;
    std::string text;
    std::string email;
};

// What Navigate does, written straight against SQLite: the members of the
// project, their display text, and (emails) each one's first address.
void RawSqlite(benchmark::State& state, bool emails) {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(Book().c_str(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        state.SkipWithError("cannot open the book");
        return;
    }
    // The book's text columns are declared with the engine's collation.
    dao::jet::RegisterJetRuntime(db);
    sqlite3_stmt* persons = nullptr;
    sqlite3_stmt* mail = nullptr;
    sqlite3_prepare_v2(db,
                       "SELECT p.\"Personal ID\", p.FirstName, p.MiddleName, p.SurName, p.FullName "
                       "FROM Projects j, PersonalData p WHERE j.Project = 'Big' AND j.InsArcPrj = 0 "
                       "AND j.\"Owner ID\" = p.\"Personal ID\" AND j.OwnerType = 0",
                       -1, &persons, nullptr);
    sqlite3_prepare_v2(db,
                       "SELECT r.ResourceString FROM ResourcesOwners o JOIN Resources r "
                       "ON o.\"Resource ID\" = r.\"Resource ID\" "
                       "WHERE o.\"Owner ID\" = ?1 AND o.OwnerType = 0 AND r.ResourceType = 2",
                       -1, &mail, nullptr);
    auto text = [](sqlite3_stmt* s, int i) {
        const unsigned char* t = sqlite3_column_text(s, i);
        return t ? std::string(reinterpret_cast<const char*>(t)) : std::string();
    };
    for (auto _ : state) {
        std::vector<Row> rows;
        while (sqlite3_step(persons) == SQLITE_ROW) {
            Row r;
            r.id = sqlite3_column_int64(persons, 0);
            r.text = text(persons, 4);
            if (r.text.empty()) r.text = text(persons, 1) + " " + text(persons, 2) + " " + text(persons, 3);
            rows.push_back(std::move(r));
        }
        sqlite3_reset(persons);
        if (emails) {
            for (Row& r : rows) {
                sqlite3_bind_int64(mail, 1, r.id);
                if (sqlite3_step(mail) == SQLITE_ROW) r.email = text(mail, 0);
                sqlite3_reset(mail);
            }
        }
        if (static_cast<int>(rows.size()) != gPersons) {
            state.SkipWithError("the raw query did not find every person");
            break;
        }
        benchmark::DoNotOptimize(rows);
    }
    sqlite3_finalize(persons);
    sqlite3_finalize(mail);
    sqlite3_close(db);
    state.counters["rows"] = gPersons;
}

void BM_RawSqlite_names(benchmark::State& state) { RawSqlite(state, false); }
void BM_RawSqlite_emails(benchmark::State& state) { RawSqlite(state, true); }

}  // namespace

BENCHMARK(BM_Navigate_names)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_RawSqlite_names)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_Navigate_emails)->Unit(benchmark::kMillisecond)->MinTime(3.0);
BENCHMARK(BM_RawSqlite_emails)->Unit(benchmark::kMillisecond)->MinTime(2.0);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc > 1) gPersons = std::atoi(argv[1]);
    if (gPersons <= 0) {
        std::fprintf(stderr, "usage: bench_automation [PERSONS] [benchmark options]\n");
        return 2;
    }
    gFolder = zelvo::bench::BenchFolder();
    zelvo::bench::SyntheticBookShape shape;
    shape.persons = gPersons;
    shape.projectSize = gPersons;  // everybody in "Big"
    zelvo::bench::CreateSyntheticBook(Book(), shape);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
