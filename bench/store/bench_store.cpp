// bench_store [PERSONS]: the upkeep of the book on a generated book of
// 100,000 persons (unless told), each beside its anchor in the same run.
//
//   CorrectDB on an up-to-date book (it runs each time a card opens);
//     anchor: SQLite opening the file, reading its schema and closing it.
//   CompressDB of that book (backup, compaction, replacement);
//     anchor: SQLite's own VACUUM INTO of the same file, run right after
//     each CompressDB so that both meet the same load.
//
// Targets: CorrectDB <= 10 ms; CompressDB <= 1.5x VACUUM INTO.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "platform/dao/dbengine.h"
#include "platform/dao/jet/jet_sql.h"
#include "platform/shell/file_system.h"
#include "store/compress_db.h"
#include "store/correct_db.h"
#include "store/library_state.h"
#include "synthetic_book.h"

namespace {

using namespace zelvo;

std::string g_book;

void Check(int rc, sqlite3* db, const char* what) {
    if (rc != SQLITE_OK) {
        std::fprintf(stderr, "bench_store: %s: %s\n", what, db ? sqlite3_errmsg(db) : sqlite3_errstr(rc));
        std::exit(1);
    }
}

void BM_CorrectDB(benchmark::State& state) {
    for (auto _ : state) {
        std::string path = g_book;
        CorrectDB(path);
    }
}

void BM_SqliteOpenSchemaClose(benchmark::State& state) {
    for (auto _ : state) {
        sqlite3* db = nullptr;
        Check(sqlite3_open_v2(g_book.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr), db, "open");
        Check(sqlite3_exec(db, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr), db, "schema");
        sqlite3_close(db);
    }
}

void VacuumInto(const std::string& target) {
    std::filesystem::remove(target);
    sqlite3* db = nullptr;
    Check(sqlite3_open_v2(g_book.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr), db, "open");
    dao::jet::RegisterJetRuntime(db);  // the collation the book's columns are declared with
    Check(sqlite3_exec(db, ("VACUUM INTO '" + target + "'").c_str(), nullptr, nullptr, nullptr), db, "vacuum");
    sqlite3_close(db);
    std::filesystem::remove(target);
}

double Seconds(const std::function<void()>& work) {
    auto t0 = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

// CompressDB and SQLite's VACUUM INTO of the same book, one right after the
// other in each iteration, so that both meet the same load of the machine.
// The time reported is CompressDB's; the counters give VACUUM INTO's and
// the ratio of the sums.
double g_compress = 0, g_vacuum = 0;
long g_pairs = 0;

void BM_CompressDB_vs_VacuumInto(benchmark::State& state) {
    double compress = 0, vacuum = 0;
    for (auto _ : state) {
        double c = Seconds([] { CompressDB(g_book); });
        double v = Seconds([] { VacuumInto(g_book + ".vacuum"); });
        state.SetIterationTime(c);
        compress += c;
        vacuum += v;
    }
    g_compress += compress;
    g_vacuum += vacuum;
    g_pairs += static_cast<long>(state.iterations());
    state.counters["vacuum_ms"] = benchmark::Counter(vacuum * 1e3 / static_cast<double>(state.iterations()));
    state.counters["ratio"] = benchmark::Counter(compress / vacuum);
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(g_book));
}

// Keeps each benchmark's time per iteration, for the ratios at the end.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& r : runs)
            if (r.run_type == Run::RT_Iteration || r.aggregate_name == "median")
                ms_[r.run_name.function_name] = r.GetAdjustedRealTime() *
                                                 (r.time_unit == benchmark::kMillisecond ? 1.0
                                                  : r.time_unit == benchmark::kMicrosecond ? 1e-3
                                                                                            : 1e-6);
        ConsoleReporter::ReportRuns(runs);
    }
    double Ms(const std::string& name) const {
        auto it = ms_.find(name);
        return it == ms_.end() ? 0 : it->second;
    }

private:
    std::map<std::string, double> ms_;
};

}  // namespace

BENCHMARK(BM_CorrectDB)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_SqliteOpenSchemaClose)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_CompressDB_vs_VacuumInto)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(4)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    bench::SyntheticBookShape shape;
    if (argc > 1) shape.persons = std::atoi(argv[1]);
    std::string folder = bench::BenchFolder();
    AppPath = folder;
    g_book = DatabasePath();
    std::printf("Making a book of %d persons in %s ...\n", shape.persons, folder.c_str());
    bench::CreateSyntheticBook(g_book, shape);
    {
        // Up to date from here on: the timed runs find nothing to change.
        std::string path = g_book;
        CorrectDB(path);
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    double correct = reporter.Ms("BM_CorrectDB"), open = reporter.Ms("BM_SqliteOpenSchemaClose");
    // Means over all pairs of every repetition.
    double compress = g_pairs ? g_compress * 1e3 / static_cast<double>(g_pairs) : 0;
    double vacuum = g_pairs ? g_vacuum * 1e3 / static_cast<double>(g_pairs) : 0;
    std::printf("\nCorrectDB, up-to-date book   %8.2f ms   (SQLite open+schema+close %6.2f ms, ratio %5.2fx)   "
                "target <= 10 ms: %s\n",
                correct, open, open > 0 ? correct / open : 0, correct <= 10 ? "met" : "MISSED");
    std::printf("CompressDB, mean of %2ld pairs  %7.2f ms   (SQLite VACUUM INTO %6.2f ms)   ratio %5.2fx   "
                "target <= 1.5x: %s\n",
                g_pairs, compress, vacuum, vacuum > 0 ? compress / vacuum : 0,
                vacuum > 0 && compress / vacuum <= 1.5 ? "met" : "MISSED");
    benchmark::Shutdown();
    return 0;
}
