// bench_window [PERSONS]: the address book window's Navigate with all
// persons of a generated book (100,000 unless told), beside the same rows
// read with SQLite's C API and put into a list the way the fill does.
//
//   frmPersons/Navigate       the refill of the window's list: the query,
//                             the fill, the sort, the first row selected
//   RawSqliteAndFill          the anchor: one prepared SELECT, then the rows
//                             into a list control, sorted
//   frmPersons/ItemClick      the click on one person: the whole summary
//                             (name, projects, the address walk and home
//                             phones, mails, webs, the job with its unit
//                             walk, work phones, mails and webs, the photo
//                             decoded and scaled to the box)
//   RawSqliteSummaryRows      the anchor: the same rows read with SQLite's
//                             C API, the photo's bytes read but not decoded
//
// Targets: Navigate within 2x the anchor; ItemClick <= 15 ms.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

#include <sqlite3.h>

#include "personswindow/frm_persons.h"
#include "photos/cjpeg.h"
#include "platform/dao/dbengine.h"
#include "platform/dao/jet/jet_sql.h"
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

// The person the click benchmarks look at, given every kind of data the
// summary shows; the others keep what the generator gave them (a mail, a
// phone, one project, one job).
constexpr int kClicked = 4321;
constexpr int kClickedOrg = (kClicked % 1000) / 10 + 1;  // the organization of the generated job
constexpr int kClickedJob = 5000;                        // a new job in a subdivision of it

// A photo as a camera would leave it: 640 x 480, a gradient, as JPEG.
std::vector<std::uint8_t> CameraPhoto() {
    imaging::Picture pic;
    pic.Width = 640;
    pic.Height = 480;
    pic.Pixels.resize(std::size_t(pic.Width) * pic.Height * 3);
    for (int y = 0; y < pic.Height; ++y)
        for (int x = 0; x < pic.Width; ++x) {
            std::uint8_t* p = pic.Row(y) + x * 3;
            p[0] = std::uint8_t(x * 255 / pic.Width);
            p[1] = std::uint8_t(y * 255 / pic.Height);
            p[2] = std::uint8_t((x + y) & 0xFF);
        }
    return PictureToJpeg(pic);
}

void GiveClickedPersonEverything() {
    dao::Database db = DBEngine().OpenDatabase(Book(), false, false, "Access");
    const std::string id = std::to_string(kClicked);
    db.Execute("Insert Into PostAddresses ([aParent ID], aType, Address, PostIndex) Values (0, 0, \"Russia\", \"101000\")");
    db.Execute("Insert Into PostAddresses ([aParent ID], aType, Address) Values (1, 2, \"Moscow\")");
    db.Execute("Insert Into PostAddresses ([aParent ID], aType, Address) Values (2, 3, \"Tverskaya 1\")");
    db.Execute("Insert Into AddressesOwners ([Address ID], [Owner ID], OwnerType) Values (3, " + id + ", 0)");
    // The person's job moves to a subdivision, so that the job's text walks
    // up one level to the organization.
    db.Execute("Insert Into Organizations ([Organization ID], Organization, [Parent ID]) Values (101, \"Sales\", " +
               std::to_string(kClickedOrg) + ")");
    db.Execute("Insert Into JobTitles ([Job ID], [Organization ID], JobTitle) Values (" + std::to_string(kClickedJob) +
               ", 101, \"Manager\")");
    db.Execute("Update Employees Set [Job ID]=" + std::to_string(kClickedJob) + " Where [Personal ID]=" + id);
    auto resource = [&](const std::string& text, int type, const std::string& owner, int ownerType) {
        db.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"" + text + "\", " +
                   std::to_string(type) + ")");
        db.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Select Max([Resource ID]), " +
                   owner + ", " + std::to_string(ownerType) + " From Resources");
    };
    resource("+7 495 000-00-00", 0, "3", 8);
    resource("ivan.example.org", 1, id, 0);
    const std::string job = std::to_string(kClickedJob);
    resource("+7 495 111-11-11", 0, job, 2);
    resource("office@example.org", 2, job, 2);
    resource("www.example.org", 1, job, 2);
    dao::Recordset photo = db.OpenRecordset("Photo", dao::dbOpenTable);
    photo.AddNew();
    photo.SetValue("Personal ID", Variant(std::int64_t{kClicked}));
    photo.SetValue("Photo", Variant(CameraPhoto()));
    photo.Update();
    photo.Close();
    db.Close();
}

void BM_frmPersons_ItemClick(benchmark::State& state) {
    AppPath = gFolder;
    frmPersons form;
    form.PrjFilter = AllPersons;
    form.Navigate();
    ui::ListItem* clicked = nullptr;
    for (int i = 1; i <= form.LvwUser.ListItems().Count() && !clicked; ++i)
        if (form.LvwUser.ListItems().Item(i).Tag() == Variant(std::int64_t{kClicked}))
            clicked = &form.LvwUser.ListItems().Item(i);
    if (!clicked) {
        state.SkipWithError("the person is not in the list");
        return;
    }
    for (auto _ : state) {
        form.LvwUser_ItemClick(*clicked);
        if (!form.ScaledPicture.Image || form.txtAddress.Text().empty() || form.lvwWeb.ListItems().Count() != 2) {
            state.SkipWithError("the summary is not whole");
            break;
        }
    }
}

// The rows of the summary straight from SQLite: each statement prepared,
// stepped to the end and finalized, as an engine would for one click.
void BM_RawSqliteSummaryRows(benchmark::State& state) {
    sqlite3* db = nullptr;
    sqlite3_open_v2(Book().c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
    dao::jet::RegisterJetRuntime(db);
    const std::string id = std::to_string(kClicked);
    const std::string job = std::to_string(kClickedJob);
    auto rows = [&](const std::string& sql) {
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(db, sql.c_str(), -1, &s, nullptr);
        std::size_t bytes = 0;
        int n = 0;
        while (sqlite3_step(s) == SQLITE_ROW) {
            ++n;
            for (int c = 0; c < sqlite3_column_count(s); ++c) bytes += sqlite3_column_bytes(s, c);
        }
        sqlite3_finalize(s);
        benchmark::DoNotOptimize(bytes);
        return n;
    };
    const std::string resources =
        "SELECT r.* FROM Resources r JOIN ResourcesOwners o ON o.\"Resource ID\" = r.\"Resource ID\" WHERE ";
    for (auto _ : state) {
        int n = rows("SELECT * FROM PersonalData WHERE \"Personal ID\"=" + id);
        n += rows("SELECT * FROM Projects WHERE \"Owner ID\"=" + id + " AND OwnerType=0");
        n += rows("SELECT * FROM AddressesOwners WHERE \"Owner ID\"=" + id + " AND OwnerType=0");
        n += rows(resources + "((o.\"Owner ID\"=" + id + " AND o.OwnerType=0 AND r.ResourceType=0) OR (o.\"Owner ID\"=3 AND o.OwnerType=8))");
        for (int node = 3; node >= 1; --node)
            n += rows("SELECT * FROM PostAddresses WHERE \"Address ID\"=" + std::to_string(node));
        n += rows(resources + "o.\"Owner ID\"=" + id + " AND o.OwnerType=0 AND r.ResourceType=2");
        n += rows(resources + "o.\"Owner ID\"=" + id + " AND o.OwnerType=0 AND r.ResourceType=1");
        n += rows("SELECT e.*, j.JobTitle, g.Organization FROM Employees e JOIN JobTitles j ON j.\"Job ID\"=e.\"Job ID\" "
                  "JOIN Organizations g ON g.\"Organization ID\"=j.\"Organization ID\" WHERE e.\"Personal ID\"=" + id);
        n += rows("SELECT * FROM Organizations WHERE \"Organization ID\"=101");
        n += rows("SELECT * FROM Organizations WHERE \"Organization ID\"=" + std::to_string(kClickedOrg));
        for (int type = 0; type <= 2; ++type)
            // The generator's employee rows are numbered as their persons.
            n += rows(resources + "r.ResourceType=" + std::to_string(type) + " AND ((o.\"Owner ID\"=" + id +
                      " AND o.OwnerType=4) OR (o.\"Owner ID\"=0 AND o.OwnerType=16) OR (o.\"Owner ID\"=" + job +
                      " AND o.OwnerType=2))");
        n += rows("SELECT * FROM Photo WHERE \"Personal ID\"=" + id + " ORDER BY \"Photo ID\" DESC");
        if (n < 14) {
            state.SkipWithError("the raw reading missed rows");
            break;
        }
    }
    sqlite3_close(db);
}

}  // namespace

BENCHMARK(BM_frmPersons_ItemClick)->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(BM_RawSqliteSummaryRows)->Unit(benchmark::kMillisecond)->Iterations(50);
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
    if (gPersons >= kClicked) GiveClickedPersonEverything();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
