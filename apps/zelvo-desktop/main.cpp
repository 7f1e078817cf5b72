// zelvo-desktop: the address book on the desktop. It plays the shell that
// hosts the library: it makes the book's automation object, points it at
// the default book (or --app-path), brings the book up to date and opens the
// address book window, which runs until the person closes it.
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <cstdlib>
#include <iostream>

#include "platform/ui/ui_host.h"
#include "qt_ui_host.h"
#include "zelvo/addressbook.h"

namespace {

// The application folder as zelvo uses it: $XDG_DATA_HOME/zelvo, that is
// ~/.local/share/zelvo.
QString DefaultAppPath() {
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data && *data) return QDir(data).filePath("zelvo");
    return QDir(QDir::homePath()).filePath(".local/share/zelvo");
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("zelvo-desktop");
    QApplication::setApplicationDisplayName("Zelvo");

    QCommandLineParser parser;
    parser.setApplicationDescription(
        "The Zelvo address book on the desktop. Opens the address book window on the\n"
        "default book, $XDG_DATA_HOME/zelvo/AddressBookW.mdb (that is\n"
        "~/.local/share/zelvo/AddressBookW.mdb), made when it is missing.");
    parser.addHelpOption();
    QCommandLineOption appPath("app-path", "The application folder, which holds the book.", "DIR");
    QCommandLineOption screenshot("screenshot",
                                  "Open the window, write it as a PNG picture to FILE once it is painted, and exit "
                                  "(works with QT_QPA_PLATFORM=offscreen).",
                                  "FILE");
    parser.addOption(appPath);
    parser.addOption(screenshot);
    parser.process(app);
    if (!parser.positionalArguments().isEmpty()) {
        std::cerr << "zelvo-desktop: unexpected argument '" << parser.positionalArguments().front().toStdString()
                  << "'\nTry 'zelvo-desktop --help'.\n";
        return 2;
    }

    zelvo::desktop::QtUiHost host;
    if (parser.isSet(screenshot)) host.SetScreenshot(parser.value(screenshot));
    zelvo::ui::SetUiHost(&host);

    zelvo::cAddressbook book;
    QString folder = parser.isSet(appPath) ? parser.value(appPath) : DefaultAppPath();
    QDir().mkpath(folder);
    book.AppPath = folder.toStdString();
    // As a shell must: the book is brought up to date (or made) before the
    // window reads it.
    std::string path;
    book.CorrectDB(path);
    book.ShowAddressBook();

    zelvo::ui::SetUiHost(nullptr);
    if (parser.isSet(screenshot) && !host.ScreenshotWritten()) return 1;
    return 0;
}
