#include "command.h"

#include <algorithm>
#include <iostream>

namespace zelvo::cli {

// Declared in the cmd_*.cpp files.
extern const Command kSqlCommand;
extern const Command kJpegCommand;
extern const Command kVcardCommand;
extern const Command kCorrectDbCommand;
extern const Command kCompactCommand;

std::span<const Command> Commands() {
    static const std::vector<Command> table = {
        kSqlCommand,
        kJpegCommand,
        kVcardCommand,
        kCorrectDbCommand,
        kCompactCommand,
    };
    return table;
}

int UsageError(std::string_view command, std::string_view reason) {
    std::cerr << "zelvo " << command << ": " << reason << "\n"
              << "Try 'zelvo " << command << " --help'.\n";
    return kExitUsage;
}

bool WantsHelp(std::span<const std::string> args) {
    return std::any_of(args.begin(), args.end(),
                       [](const std::string& a) { return a == "--help" || a == "-h"; });
}

}  // namespace zelvo::cli
