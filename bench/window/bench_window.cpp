// bench_window [PERSONS]: the address book window's Navigate with all
// persons of a generated book (100,000 unless told), beside the same rows
// read with SQLite's C API and put into a list the way the fill does.
//
//   frmPersons/Navigate       the refill of the window's list: the query,
//                             the fill, the sort, the first row selected
//   RawSqliteAndFill          the anchor: one prepared SELECT, then the rows
//                             into a list control, sorted
//
// Target: Navigate within 2x the anchor.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

#include "personswindow/frm_persons.h"
#include "raw_persons.h"
#include "store/library_state.h"
#include "synthetic_book.h"
#include "zelvo/enums.h"

namespace {

using namespace zelvo;

int gPersons = 100000;
std::string gFolder;

std::string Book() { return gFolder + "/AddressBookW.mdb"; }

void BM_frmPersons_Navigate(benchmark::State& state) {
    AppPath = gFolder;
    frmPersons form;
    form.PrjFilter = AllPersons;
    for (auto _ : state) {
        form.Navigate();
        if (form.LvwUser.ListItems().Count() != gPersons) {
            state.SkipWithError("Navigate did not list every person");
            break;
        }
    }
    state.counters["rows"] = gPersons;
}

void BM_RawSqliteAndFill(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<bench::RawPerson> rows = bench::ReadLivePersons(Book());
        ui::ListView list;
        list.SetAllowRedraw(false);
        for (auto it = rows.rbegin(); it != rows.rend(); ++it) {
            ui::ListItem& item = list.ListItems().Add();
            item.SetTag(Variant(it->id));
            item.SetText(it->text);
            item.SetIcon(Variant("User"));
            item.SetSmallIcon(Variant("User"));
        }
        list.Sort();
        list.SetAllowRedraw(true);
        if (list.ListItems().Count() != gPersons) {
            state.SkipWithError("the raw query did not find every person");
            break;
        }
        benchmark::DoNotOptimize(list);
    }
    state.counters["rows"] = gPersons;
}

}  // namespace

BENCHMARK(BM_frmPersons_Navigate)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_RawSqliteAndFill)->Unit(benchmark::kMillisecond)->Iterations(5);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc > 1) gPersons = std::atoi(argv[1]);
    if (gPersons <= 0) {
        std::fprintf(stderr, "usage: bench_window [PERSONS] [benchmark options]\n");
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
