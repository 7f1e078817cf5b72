// What the desktop tests share: one QApplication on Qt's offscreen platform
// for the whole program, a fixture that opens windows of the library on the
// sample book through the desktop's UiHost, a measure of the ink in a region
// of a screenshot, and the leak checker told about fontconfig. Include it in
// one source file of each test program.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QRect>
#include <QWidget>
#include <functional>
#include <string>

#include "platform/ui/form.h"
#include "qt_ui_host.h"
#include "store/library_state.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"

// Fontconfig keeps a cache for the life of the process that it never frees;
// the leak checker of the sanitized build would count it against the tests.
// The hook must be visible: the tree builds with hidden symbols by default.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}

namespace zelvo::testing {

inline QApplication& App() {
    static int argc = 1;
    static char name[] = "desktop_tests";
    static char* argv[] = {name, nullptr};
    static QApplication* app = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return new QApplication(argc, argv);
    }();
    return *app;
}

// The sample book in a folder of its own as the application folder, and
// the desktop's UiHost installed: a window the library opens is drawn by
// its layout, and `Drive` plays the person in it.
class DesktopTest : public ::testing::Test {
protected:
    void SetUp() override {
        App();
        saved_ = AppPath;
        AppPath = dir_.path().string();
        CreateSampleBook(DatabasePath()).Close();
        previous_ = ui::SetUiHost(&host_);
    }
    void TearDown() override {
        ui::SetUiHost(previous_);
        AppPath = saved_;
    }

    // What the person does in the next window. A window the body leaves
    // open (a failed assertion returns early) is closed, so a test never
    // waits for a person who is not there.
    void Drive(std::function<void(ui::Form&, QWidget&)> body) {
        host_.onWindowShown = [body](ui::Form& form, QWidget& window) {
            body(form, window);
            if (form.Visible()) form.Unload();
        };
    }

    TempDir dir_;
    std::string saved_;
    desktop::QtUiHost host_;
    ui::UiHost* previous_ = nullptr;
};

// How many pixels of `rect` differ from the background, read `inset`
// pixels in from its right end at half its height: text drawn there makes
// many, an empty box or row few or none.
inline int InkIn(const QImage& image, const QRect& rect, int inset = 1) {
    QRect r = rect.intersected(image.rect());
    if (r.isEmpty()) return 0;
    QRgb background = image.pixel(r.right() - inset, r.top() + r.height() / 2);
    int ink = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            if (image.pixel(x, y) != background) ++ink;
    return ink;
}

}  // namespace zelvo::testing
