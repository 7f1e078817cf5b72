// bench_jet [FILE]: converting a genuine Jet file (nwind.mdb of the shared
// data unless told) into a book, beside its anchor in the same run:
//
//   Convert: DBEngine.CompactDatabase from the Jet file to a new book —
//     reading every row through libmdb and writing tables, rows, counters.
//   Anchor: libmdb alone reading every row of every user table of the same
//     file (open, catalog, bind, fetch), which any converter must do.
//
// Target: the conversion within 3x the reading alone.
#include <benchmark/benchmark.h>
#include <mdbtools.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "platform/dao/dbengine.h"

namespace {

std::string g_source;
std::string g_target;

void BM_ConvertJetFile(benchmark::State& state) {
    for (auto _ : state) {
        std::filesystem::remove(g_target);
        zelvo::dao::Engine().CompactDatabase(g_source, g_target);
    }
}

void BM_LibmdbReadAllRows(benchmark::State& state) {
    long rows = 0;
    for (auto _ : state) {
        MdbHandle* mdb = mdb_open(g_source.c_str(), MDB_NOFLAGS);
        mdb_set_bind_size(mdb, 256 * 1024);
        mdb_read_catalog(mdb, MDB_TABLE);
        for (unsigned i = 0; i < mdb->num_catalog; ++i) {
            auto* e = static_cast<MdbCatalogEntry*>(g_ptr_array_index(mdb->catalog, i));
            if (e->object_type != MDB_TABLE || mdb_is_system_table(e)) continue;
            MdbTableDef* t = mdb_read_table(e);
            mdb_read_columns(t);
            std::vector<std::string> bufs(t->num_cols, std::string(256 * 1024, '\0'));
            std::vector<int> lens(t->num_cols);
            for (unsigned c = 0; c < t->num_cols; ++c) mdb_bind_column(t, static_cast<int>(c + 1), bufs[c].data(), &lens[c]);
            mdb_rewind_table(t);
            while (mdb_fetch_row(t)) ++rows;
            mdb_free_tabledef(t);
        }
        mdb_close(mdb);
    }
    benchmark::DoNotOptimize(rows);
}

BENCHMARK(BM_ConvertJetFile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LibmdbReadAllRows)->Unit(benchmark::kMillisecond);

// Prints each benchmark beside the anchor and the ratio.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& r : runs) {
            double ms = r.GetAdjustedRealTime();
            if (r.benchmark_name().find("Convert") != std::string::npos) convert_ = ms;
            else anchor_ = ms;
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        if (convert_ > 0 && anchor_ > 0)
            std::printf("\nconvert %.1f ms, libmdb reading alone %.1f ms: %.2fx (target <= 3x)\n", convert_, anchor_,
                        convert_ / anchor_);
    }

private:
    double convert_ = 0, anchor_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    g_source = argc > 1 ? argv[1] : std::string(ZELVO_SHARED_DATA) + "/jet/nwind.mdb";
    if (!std::filesystem::exists(g_source)) {
        std::fprintf(stderr, "bench_jet: no Jet file at %s\n", g_source.c_str());
        return 1;
    }
    g_target = (std::filesystem::temp_directory_path() / ("bench_jet_" + std::to_string(getpid()) + ".mdb")).string();
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::filesystem::remove(g_target);
    return 0;
}
