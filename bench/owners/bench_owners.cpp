// bench_owners: photos, addresses and resources of a generated book of
// 100,000 persons with 200,000 resources, each figure beside raw SQLite
// doing the same reads in the same run.
//
//   GetPhotoByEmail, no scaling        anchor: the same join through SQLite,
//                                      opening the file each time as we do
//   GetPhotoByEmail, 3000x2000 JPEG into a 120x160 box
//                                      anchor: the same read, no decode
//   AddressFields of a node six levels deep, the record set already open
//                                      anchor: six prepared lookups by key
//   DeletePersonResources, 20 links of which 10 shared
//                                      anchor: the same deletes through SQLite
//   LvwAddPersons2 in photo mode, 1,000 persons with photos
//                                      anchor: reading their 1,000 photos
//
// Targets: photo lookup <= 2x raw and <= 1 ms; scaled lookup <= 25 ms;
// AddressFields <= 50 us; DeletePersonResources <= 2 ms; photo list <= 1.5 s.
//
// The book holds ZELVO_BENCH_PHOTOS photos (default 5,000; 50,000 makes a
// book of several gigabytes) of 20-200 kB, repeated from a few generated
// JPEGs.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "addresses/standard_address.h"
#include "personslist/lvw_add_persons.h"
#include "photos/person_list_photos.h"
#include "platform/dao/jet/jet_sql.h"
#include "resources/resource_ops.h"
#include "store/library_state.h"
#include "support/reference_jpeg.h"
#include "synthetic_book.h"
#include "zelvo/db_photo.h"

namespace {

using namespace zelvo;

constexpr int kPersons = 100000;
constexpr int kListPersons = 1000;
constexpr int kBigPhotoPerson = 4242;   // has the 3000 x 2000 photo
constexpr int kDeletePerson = 99999;    // gets 20 links each iteration
constexpr int kSharingPerson = 99998;   // shares 10 of them
int g_photos = 5000;
std::string g_book;
std::int32_t g_deepNode = 0;

void Check(int rc, sqlite3* db, const char* what) {
    if (rc != SQLITE_OK && rc != SQLITE_ROW && rc != SQLITE_DONE) {
        std::fprintf(stderr, "bench_owners: %s: %s\n", what, sqlite3_errmsg(db));
        std::exit(1);
    }
}

sqlite3* OpenRaw(int flags = SQLITE_OPEN_READONLY) {
    sqlite3* db = nullptr;
    Check(sqlite3_open_v2(g_book.c_str(), &db, flags, nullptr), db, "open");
    Check(dao::jet::RegisterJetRuntime(db), db, "runtime");  // the collation of the text columns
    return db;
}

// A JPEG of w x h: a gradient with noise, so that the size grows with the
// quality as a photo's does.
Bytes MakeJpeg(int w, int h, int quality, unsigned seed) {
    std::mt19937 rng(seed);
    imaging::Picture pic;
    pic.Width = w, pic.Height = h;
    pic.Pixels.resize(std::size_t(w) * h * 3);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            std::uint8_t* p = pic.Row(y) + std::size_t(x) * 3;
            int n = int(rng() % 48);
            p[0] = std::uint8_t((x * 255 / w + n) & 0xFF);
            p[1] = std::uint8_t((y * 255 / h + n) & 0xFF);
            p[2] = std::uint8_t(((x + y) * 127 / (w + h) + n) & 0xFF);
        }
    return testing::LibjpegEncode(pic, [&](jpeg_compress_struct& c) { jpeg_set_quality(&c, quality, TRUE); });
}

void FillBook() {
    bench::CreateSyntheticBook(g_book);
    std::vector<Bytes> jpegs;
    for (auto [w, h, q] : {std::tuple{480, 640, 60}, {600, 800, 70}, {600, 800, 85}, {768, 1024, 80},
                           {768, 1024, 90}, {900, 1200, 85}})
        jpegs.push_back(MakeJpeg(w, h, q, unsigned(w * q)));
    const Bytes big = MakeJpeg(3000, 2000, 85, 7);
    std::printf("photos: %d rows from JPEGs of", g_photos);
    for (const Bytes& j : jpegs) std::printf(" %zu", j.size() / 1024);
    std::printf(" kB; the big one %zu kB\n", big.size() / 1024);

    sqlite3* db = OpenRaw(SQLITE_OPEN_READWRITE);
    Check(sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr), db, "begin");
    sqlite3_stmt* photo = nullptr;
    Check(sqlite3_prepare_v2(db, "INSERT INTO Photo(\"Personal ID\", Photo) VALUES(?1, ?2)", -1, &photo, nullptr), db,
          "prepare");
    // Persons 1..g_photos have a photo; the list's thousand are among them.
    for (int id = 1; id <= g_photos; ++id) {
        const Bytes& b = id == kBigPhotoPerson ? big : jpegs[std::size_t(id) % jpegs.size()];
        sqlite3_bind_int(photo, 1, id);
        sqlite3_bind_blob(photo, 2, b.data(), int(b.size()), SQLITE_STATIC);
        Check(sqlite3_step(photo), db, "photo");
        sqlite3_reset(photo);
    }
    sqlite3_finalize(photo);
    // A street of 20,000 houses, and one chain six levels deep.
    sqlite3_stmt* node = nullptr;
    Check(sqlite3_prepare_v2(db, "INSERT INTO PostAddresses(\"aParent ID\", aType, Address, PostIndex) VALUES(?1, ?2, ?3, ?4)",
                             -1, &node, nullptr),
          db, "prepare");
    auto add = [&](std::int64_t parent, int level, const std::string& text, const char* index) {
        sqlite3_bind_int64(node, 1, parent);
        sqlite3_bind_int(node, 2, level);
        sqlite3_bind_text(node, 3, text.c_str(), -1, SQLITE_TRANSIENT);
        if (index) sqlite3_bind_text(node, 4, index, -1, SQLITE_STATIC);
        else sqlite3_bind_null(node, 4);
        Check(sqlite3_step(node), db, "node");
        sqlite3_reset(node);
        return sqlite3_last_insert_rowid(db);
    };
    std::int64_t country = add(0, 0, "Russia", "100000");
    std::int64_t region = add(country, 1, "Moscow Obl.", nullptr);
    std::int64_t city = add(region, 2, "t. Moscow", nullptr);
    std::int64_t street = add(city, 3, "st. Tverskaya", "125009");
    for (int h = 1; h <= 20000; ++h) add(street, 4, "h. " + std::to_string(h), nullptr);
    std::int64_t house = add(street, 4, "h. 7a", nullptr);
    g_deepNode = std::int32_t(add(house, 5, "ap. 12", nullptr));
    sqlite3_finalize(node);
    Check(sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr), db, "commit");
    sqlite3_close(db);
}

// ---- photos by mail

void BM_GetPhotoByEmail(benchmark::State& state) {
    dbPhoto photos;
    int id = 1;
    for (auto _ : state) {
        // Without scaling the caller gets the picture at full size; the
        // target is for the lookup, so no picture is asked for and so none
        // is decoded.
        if (!photos.GetPhotoByEmail(bench::SyntheticEmail(id), nullptr)) state.SkipWithError("not found");
        id = id % g_photos + 1;
    }
}

void BM_RawPhotoByEmail(benchmark::State& state) {
    int id = 1;
    for (auto _ : state) {
        sqlite3* db = OpenRaw();
        sqlite3_stmt* st = nullptr;
        Check(sqlite3_prepare_v2(db,
                                 "SELECT p.\"Personal ID\", p.Photo FROM Resources r JOIN ResourcesOwners o ON "
                                 "r.\"Resource ID\"=o.\"Resource ID\" JOIN Photo p ON o.\"Owner ID\"=p.\"Personal ID\" "
                                 "JOIN PersonalData d ON p.\"Personal ID\"=d.\"Personal ID\" WHERE r.ResourceString=?1 "
                                 "AND r.ResourceType=2 AND o.OwnerType=0 ORDER BY p.\"Photo ID\" DESC",
                                 -1, &st, nullptr),
              db, "prepare");
        const std::string mail = bench::SyntheticEmail(id);
        sqlite3_bind_text(st, 1, mail.c_str(), -1, SQLITE_STATIC);
        if (sqlite3_step(st) != SQLITE_ROW) state.SkipWithError("not found");
        benchmark::DoNotOptimize(sqlite3_column_blob(st, 1));
        benchmark::DoNotOptimize(sqlite3_column_bytes(st, 1));
        sqlite3_finalize(st);
        sqlite3_close(db);
        id = id % g_photos + 1;
    }
}

void BM_GetPhotoByEmailScaled(benchmark::State& state) {
    ui::PictureBox picPhoto, scaled;
    scaled.Width = 120 * 15, scaled.Height = 160 * 15;
    dbPhoto photos;
    photos.SetpicPhoto(&picPhoto);
    photos.SetScaledPhoto(&scaled);
    for (auto _ : state) {
        std::shared_ptr<imaging::Picture> pic;
        if (!photos.GetPhotoByEmail(bench::SyntheticEmail(kBigPhotoPerson), &pic, true) || !pic || pic->Width != 120)
            state.SkipWithError("no scaled picture");
    }
}

// ---- addresses

void BM_AddressFieldsSixDeep(benchmark::State& state) {
    StandardAddress walker;
    walker.InitDBSelf();
    if (walker.AddressFields(g_deepNode).Street.empty()) state.SkipWithError("no chain");  // the first walk
    for (auto _ : state) benchmark::DoNotOptimize(walker.AddressFields(g_deepNode));
}

void BM_RawSixLookups(benchmark::State& state) {
    sqlite3* db = OpenRaw();
    sqlite3_stmt* st = nullptr;
    Check(sqlite3_prepare_v2(db, "SELECT Address, aType, PostIndex, \"aParent ID\" FROM PostAddresses WHERE \"Address ID\"=?1",
                             -1, &st, nullptr),
          db, "prepare");
    for (auto _ : state) {
        std::int64_t id = g_deepNode;
        std::string street;
        while (id > 0) {
            sqlite3_bind_int64(st, 1, id);
            if (sqlite3_step(st) != SQLITE_ROW) break;
            street += reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
            id = sqlite3_column_int64(st, 3);
            sqlite3_reset(st);
        }
        sqlite3_reset(st);
        benchmark::DoNotOptimize(street);
    }
    sqlite3_finalize(st);
    sqlite3_close(db);
}

// ---- resources

// 20 resources of the person, 10 of them also linked to another person.
void GiveTwentyLinks() {
    sqlite3* db = OpenRaw(SQLITE_OPEN_READWRITE);
    Check(sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr), db, "begin");
    for (int i = 0; i < 20; ++i) {
        std::string sql = "INSERT INTO Resources(ResourceString, ResourceType, ResourceSubType) VALUES('r" +
                          std::to_string(i) + "', 0, 0)";
        Check(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), db, "resource");
        std::string id = std::to_string(sqlite3_last_insert_rowid(db));
        sql = "INSERT INTO ResourcesOwners(\"Resource ID\", \"Owner ID\", OwnerType) VALUES(" + id + ", " +
              std::to_string(kDeletePerson) + ", 0)";
        Check(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), db, "link");
        if (i % 2 == 0) {
            sql = "INSERT INTO ResourcesOwners(\"Resource ID\", \"Owner ID\", OwnerType) VALUES(" + id + ", " +
                  std::to_string(kSharingPerson) + ", 0)";
            Check(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), db, "shared link");
        }
    }
    Check(sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr), db, "commit");
    sqlite3_close(db);
}

void BM_DeletePersonResources(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        GiveTwentyLinks();
        state.ResumeTiming();
        if (!DeletePersonResources(kDeletePerson)) state.SkipWithError("failed");
    }
}

void BM_RawDeletePersonResources(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        GiveTwentyLinks();
        state.ResumeTiming();
        sqlite3* db = OpenRaw(SQLITE_OPEN_READWRITE);
        const std::string person = std::to_string(kDeletePerson);
        std::vector<std::int64_t> ids;
        sqlite3_stmt* st = nullptr;
        Check(sqlite3_prepare_v2(db, ("SELECT \"Resource ID\" FROM ResourcesOwners WHERE \"Owner ID\"=" + person +
                                      " AND (OwnerType=0 OR OwnerType IS NULL)").c_str(),
                                 -1, &st, nullptr),
              db, "links");
        while (sqlite3_step(st) == SQLITE_ROW) ids.push_back(sqlite3_column_int64(st, 0));
        sqlite3_finalize(st);
        Check(sqlite3_exec(db, ("DELETE FROM ResourcesOwners WHERE \"Owner ID\"=" + person +
                                " AND (OwnerType=0 OR OwnerType IS NULL)").c_str(),
                           nullptr, nullptr, nullptr),
              db, "delete links");
        for (std::int64_t id : ids) {
            std::string left = "SELECT 1 FROM ResourcesOwners WHERE \"Resource ID\"=" + std::to_string(id);
            Check(sqlite3_prepare_v2(db, left.c_str(), -1, &st, nullptr), db, "left");
            bool shared = sqlite3_step(st) == SQLITE_ROW;
            sqlite3_finalize(st);
            if (!shared)
                Check(sqlite3_exec(db, ("DELETE FROM Resources WHERE \"Resource ID\"=" + std::to_string(id)).c_str(),
                                   nullptr, nullptr, nullptr),
                      db, "delete row");
        }
        sqlite3_close(db);
    }
    sqlite3* db = OpenRaw(SQLITE_OPEN_READWRITE);  // the shared links pile up otherwise
    Check(sqlite3_exec(db, ("DELETE FROM ResourcesOwners WHERE \"Owner ID\"=" + std::to_string(kSharingPerson) +
                            " AND \"Resource ID\">200000").c_str(),
                       nullptr, nullptr, nullptr),
          db, "tidy");
    sqlite3_close(db);
}

// ---- the person list in photo mode

void BM_LvwAddPersons2PhotoMode(benchmark::State& state) {
    InstallPersonListPhotos();
    ui::PictureBox picPhoto, scaled;
    for (auto _ : state) {
        ui::ListView list;
        auto icons = std::make_shared<ui::ImageList>();
        icons->ListImages().Add("User", nullptr);
        list.SetIcons(icons);
        dao::Database db = DBEngine().OpenDatabase(DatabasePath(), false, true, "Access");
        dao::Recordset rs = db.OpenRecordset("Select * From PersonalData Where [Personal ID]<=" + std::to_string(kListPersons));
        LvwAddPersons2(list, rs, -1, Variant("User"), true, &picPhoto, &scaled);
        if (icons->ListImages().Count() != kListPersons + 1) state.SkipWithError("photos missing");
        rs.Close();
        db.Close();
    }
}

void BM_RawReadListPhotos(benchmark::State& state) {
    for (auto _ : state) {
        sqlite3* db = OpenRaw();
        sqlite3_stmt* st = nullptr;
        Check(sqlite3_prepare_v2(db, "SELECT Photo FROM Photo WHERE \"Personal ID\"=?1 ORDER BY \"Photo ID\" DESC", -1, &st,
                                 nullptr),
              db, "prepare");
        for (int id = 1; id <= kListPersons; ++id) {
            sqlite3_bind_int(st, 1, id);
            if (sqlite3_step(st) == SQLITE_ROW) benchmark::DoNotOptimize(sqlite3_column_blob(st, 0));
            sqlite3_reset(st);
        }
        sqlite3_finalize(st);
        sqlite3_close(db);
    }
}

}  // namespace

BENCHMARK(BM_GetPhotoByEmail)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RawPhotoByEmail)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_GetPhotoByEmailScaled)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AddressFieldsSixDeep)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RawSixLookups)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DeletePersonResources)->Unit(benchmark::kMicrosecond)->Iterations(200);
BENCHMARK(BM_RawDeletePersonResources)->Unit(benchmark::kMicrosecond)->Iterations(200);
BENCHMARK(BM_LvwAddPersons2PhotoMode)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_RawReadListPhotos)->Unit(benchmark::kMillisecond)->Iterations(3);

int main(int argc, char** argv) {
    if (const char* n = std::getenv("ZELVO_BENCH_PHOTOS")) g_photos = std::max(kBigPhotoPerson, std::atoi(n));
    AppPath = bench::BenchFolder();
    g_book = DatabasePath();
    FillBook();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
