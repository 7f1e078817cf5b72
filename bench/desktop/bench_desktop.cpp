// bench_desktop [PERSONS]: the desktop host on a generated book (100,000
// persons unless told), on Qt's offscreen platform, beside the same rows
// read with SQLite's C API in the same run.
//
//   first frame   ShowAddressBook with all persons until the window is
//                 painted, on a book that has its lookup indexes (the
//                 first window on a new book makes them; printed apart)
//                 (target 0.4 s)
//   scroll        the persons list from top to bottom a page at a time, each
//                 page painted (target 16 ms a page)
//   peak memory   of the whole process at the end (target 200 MB)
//
// Times are wall clock; run on a quiet machine.
#include <sys/resource.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QListView>
#include <QScrollBar>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "personswindow/frm_persons.h"
#include "qt_ui_host.h"
#include "raw_persons.h"
#include "store/library_state.h"
#include "synthetic_book.h"

namespace {

using Clock = std::chrono::steady_clock;
double Ms(Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

// The processor time of the process so far, for a machine that is busy
// with other work: wall clock then says more about the others.
double CpuMs() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
    int persons = argc > 1 ? std::atoi(argv[1]) : 100000;
    if (persons <= 0) {
        std::fprintf(stderr, "usage: bench_desktop [PERSONS]\n");
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    std::string folder = zelvo::bench::BenchFolder();
    zelvo::bench::SyntheticBookShape shape;
    shape.persons = persons;
    zelvo::bench::CreateSyntheticBook(folder + "/AddressBookW.mdb", shape);
    zelvo::AppPath = folder;

    auto t0 = Clock::now();
    double c0 = CpuMs();
    size_t raw = zelvo::bench::ReadLivePersons(folder + "/AddressBookW.mdb").size();
    double rawMs = Ms(Clock::now() - t0), rawCpu = CpuMs() - c0;

    zelvo::desktop::QtUiHost host;
    zelvo::ui::SetUiHost(&host);
    double firstFrameMs = 0, pageMs = 0, firstFrameCpu = 0, startCpu = 0;
    int pages = 0, rows = 0;
    Clock::time_point start;
    // The first window on a new book also makes the engine's lookup indexes,
    // which stay in the file: it is timed apart, and a book in use is what
    // the figure is about.
    bool warming = true;
    double newBookMs = 0;
    host.onWindowShown = [&](zelvo::ui::Form& form, QWidget& window) {
        window.grab();  // paints the whole window once
        firstFrameMs = Ms(Clock::now() - start);
        firstFrameCpu = CpuMs() - startCpu;
        if (warming) {
            newBookMs = firstFrameMs;
            form.Unload();
            return;
        }
        auto* list = window.findChild<QListView*>("LvwUser");
        rows = list->model()->rowCount();
        QScrollBar* bar = list->verticalScrollBar();
        auto s = Clock::now();
        for (bar->setValue(0);; bar->setValue(bar->value() + bar->pageStep())) {
            list->viewport()->grab();  // paints the page that shows
            ++pages;
            if (bar->value() >= bar->maximum()) break;
        }
        pageMs = Ms(Clock::now() - s) / pages;
        form.Unload();
    };
    start = Clock::now();
    startCpu = CpuMs();
    zelvo::PickPerson("", false, 0, 0, true);
    warming = false;
    start = Clock::now();
    startCpu = CpuMs();
    zelvo::PickPerson("", false, 0, 0, true);
    zelvo::ui::SetUiHost(nullptr);

    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("persons                    %d (window rows %d, raw rows %zu)\n", persons, rows, raw);
    std::printf("raw SQLite read            %8.1f ms wall %8.1f ms cpu\n", rawMs, rawCpu);
    std::printf("first frame on a new book  %8.1f ms wall   (the engine's lookup indexes made)\n", newBookMs);
    std::printf("first painted frame        %8.1f ms wall %8.1f ms cpu   (%.1fx raw cpu; target 400 ms)\n",
                firstFrameMs, firstFrameCpu, firstFrameCpu / rawCpu);
    std::printf("scroll, per page           %8.2f ms   (%d pages; target 16 ms)\n", pageMs, pages);
    std::printf("peak memory                %8.1f MB   (target 200 MB)\n", usage.ru_maxrss / 1024.0);
    return rows == persons ? 0 : 1;
}
