#include "command.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace zelvo::cli {

// Declared in the cmd_*.cpp files.
extern const Command kSqlCommand;
extern const Command kJpegCommand;
extern const Command kVcardCommand;
extern const Command kCorrectDbCommand;
extern const Command kCompactCommand;
extern const Command kCallCommand;
extern const Command kListCommand;
extern const Command kProjectsCommand;
extern const Command kPhotoCommand;
extern const Command kUiCommand;
extern const Command kOrgCommand;
extern const Command kPersonCommand;

std::span<const Command> Commands() {
    static const std::vector<Command> table = {
        kListCommand,
        kProjectsCommand,
        kPersonCommand,
        kCallCommand,
        kSqlCommand,
        kJpegCommand,
        kVcardCommand,
        kCorrectDbCommand,
        kCompactCommand,
        kPhotoCommand,
        kUiCommand,
        kOrgCommand,
    };
    return table;
}

int UsageError(std::string_view command, std::string_view reason) {
    std::cerr << "zelvo " << command << ": " << reason << "\n"
              << "Try 'zelvo " << command << " --help'.\n";
    return kExitUsage;
}

HostOptions& Host() {
    static HostOptions options;
    return options;
}

std::string HostAppPath() {
    if (Host().appPath) return *Host().appPath;
    const char* data = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    std::filesystem::path base = data && *data ? std::filesystem::path(data)
                                               : std::filesystem::path(home ? home : ".") / ".local/share";
    return (base / "zelvo").string();
}

bool WantsHelp(std::span<const std::string> args) {
    return std::any_of(args.begin(), args.end(),
                       [](const std::string& a) { return a == "--help" || a == "-h"; });
}

int ReportBookError(std::string_view command, const std::string& bookPath, const Error& e) {
    if (e.number() == 3024 || e.number() == 3044) {
        std::cerr << "zelvo " << command << ": there is no address book at " << bookPath
                  << "\nMake one with 'zelvo correct-db'" << (Host().appPath ? " --app-path " + *Host().appPath : "")
                  << ".\n";
    } else {
        std::cerr << "zelvo " << command << ": error " << e.number() << ": " << e.description() << " (" << bookPath
                  << ")\n";
    }
    return kExitFailure;
}

}  // namespace zelvo::cli
