// zelvo correct-db and zelvo compact: the upkeep of the book file.
#include <sys/stat.h>

#include <iostream>

#include "command.h"
#include "platform/core/error.h"
#include "platform/shell/file_system.h"
#include "store/compress_db.h"
#include "store/correct_db.h"
#include "store/library_state.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kCorrectUsage =
    "Usage: zelvo correct-db [--app-path DIR]\n"
    "\n"
    "Finds the address book AddressBookW.mdb in DIR and brings it to today's\n"
    "layout: missing tables, columns and saved queries are added, the data of\n"
    "older layouts is moved into today's tables. With no book in DIR, an\n"
    "AddressBook.mdb of an earlier version there (or beside the program) is\n"
    "copied and converted and itself left in place; with none either, a new,\n"
    "empty book is made. Running it again changes nothing.\n"
    "\n"
    "An earlier book may be a genuine Jet file (Access 97 or Access 2000-2003\n"
    "format), found as AddressBook.mdb or as AddressBookW.mdb itself: every\n"
    "table, column and row of it is carried into the new book, whose old copy\n"
    "is kept (AddressBook.mdb stays; AddressBookW.mdb becomes the backup\n"
    "~AddressBookW.mdb). A damaged or truncated Jet file, or one of Access\n"
    "2007 or later, is reported with the reason and left as it is.\n"
    "A conversion that is cut off (killed, power lost) leaves the book as it\n"
    "was; the next run converts it whole.\n"
    "\n"
    "Options:\n"
    "  --app-path DIR  the application folder (default: $XDG_DATA_HOME/zelvo,\n"
    "                  i.e. ~/.local/share/zelvo); made when missing\n"
    "\n"
    "Exit status: 0 done (or the book is held by another program right now,\n"
    "which is said on stderr), 1 the book could not be corrected (the reason\n"
    "is printed), 2 bad usage.\n";

constexpr std::string_view kCompactUsage =
    "Usage: zelvo compact [--app-path DIR]\n"
    "\n"
    "Compacts the address book in DIR: a backup ~AddressBookW.mdb is made\n"
    "first, the compacted copy ~~AddressBookW.mdb then takes the book's place\n"
    "in one step. The progress is shown line by line.\n"
    "\n"
    "Options:\n"
    "  --app-path DIR  the application folder (default: $XDG_DATA_HOME/zelvo,\n"
    "                  i.e. ~/.local/share/zelvo)\n"
    "\n"
    "Exit status: 0 compacted, 1 not compacted (no book, the book is open in\n"
    "another program, or a step failed; the reason is printed), 2 bad usage.\n";

// Reads [--app-path DIR]; returns false (after the usage message) on anything else.
bool ParseAppPath(std::string_view command, std::span<const std::string> args, std::string& appPath, int& status) {
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--app-path") {
            if (i + 1 >= args.size()) {
                status = UsageError(command, "--app-path needs a folder");
                return false;
            }
            Host().appPath = args[++i];
        } else {
            status = UsageError(command, "unexpected argument '" + args[i] + "'");
            return false;
        }
    }
    appPath = HostAppPath();
    return true;
}

ino_t InodeOf(const std::string& path) {
    struct stat st{};
    return ::stat(path.c_str(), &st) == 0 ? st.st_ino : 0;
}

// Prints each new label of the progress window on its own line.
class ProgressPrinter {
public:
    ProgressPrinter() {
        previous_ = SetCompressFormObserver([this](const frmCompress& form) {
            if (form.Visible && form.Label1 != last_) {
                last_ = form.Label1;
                std::cout << last_ << std::endl;
            }
        });
    }
    ~ProgressPrinter() { SetCompressFormObserver(std::move(previous_)); }

private:
    CompressFormObserver previous_;
    std::string last_;
};

int RunCorrectDb(std::span<const std::string> args) {
    std::string appPath;
    int status = kExitOk;
    if (!ParseAppPath("correct-db", args, appPath, status)) return status;
    try {
        shell::CreateFolder(appPath);
    } catch (const Error& e) {
        std::cerr << "zelvo correct-db: cannot make the folder " << appPath << ": " << e.description() << "\n";
        return kExitFailure;
    }
    AppPath = appPath;
    ProgressPrinter progress;
    int reports = ShellPaths().ReportCount();
    std::string path;
    CorrectDB(path);
    if (ShellPaths().ReportCount() != reports) {
        std::cerr << "zelvo correct-db: the book " << path << " was not corrected (see the error above)\n";
        return kExitFailure;
    }
    if (!shell::FileExists(path)) {
        std::cerr << "zelvo correct-db: no book at " << path << "\n";
        return kExitFailure;
    }
    // CorrectDB passes over a book that another program holds alone.
    try {
        dao::Database db = DBEngine().OpenDatabase(path);
        db.Close();
    } catch (const Error& e) {
        std::cerr << "zelvo correct-db: " << path << " was left as it is: " << e.description() << "\n";
        return kExitOk;
    }
    std::cout << "The book is up to date: " << path << "\n";
    return kExitOk;
}

int RunCompact(std::span<const std::string> args) {
    std::string appPath;
    int status = kExitOk;
    if (!ParseAppPath("compact", args, appPath, status)) return status;
    AppPath = appPath;
    std::string path = DatabasePath();
    if (!shell::FileExists(path)) {
        std::cerr << "zelvo compact: there is no book at " << path << "\n";
        return kExitFailure;
    }
    ino_t before = InodeOf(path);
    int reports = ShellPaths().ReportCount();
    {
        ProgressPrinter progress;
        CompressDB(path);
    }
    if (ShellPaths().ReportCount() != reports) {
        std::cerr << "zelvo compact: the book was not compacted (see the error above)\n";
        return kExitFailure;
    }
    if (InodeOf(path) == before) {
        std::cerr << "zelvo compact: the book was not compacted: it is open in another program, or it is\n"
                     "not an address book. Close the other program and try again.\n";
        return kExitFailure;
    }
    std::cout << "Compacted " << path << " (backup: "
              << shell::ShellPaths::AddSeparator(shell::ShellPaths::GetParentFolderName(path)) << "~"
              << shell::ShellPaths::GetFileName(path) << ")\n";
    return kExitOk;
}

}  // namespace

extern const Command kCorrectDbCommand{"correct-db", "create the book or bring it to today's layout",
                                       kCorrectUsage, RunCorrectDb};
extern const Command kCompactCommand{"compact", "compact the book, keeping a backup", kCompactUsage, RunCompact};

}  // namespace zelvo::cli
