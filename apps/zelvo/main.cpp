// zelvo: the command-line host of the address book.
#include <iostream>
#include <string>
#include <vector>

#include "command.h"

namespace {

void PrintHelp() {
    std::cout << "Usage: zelvo COMMAND [OPTIONS] [ARGS]\n\n"
                 "The address book on the command line.\n\nCommands:\n";
    for (const auto& c : zelvo::cli::Commands()) {
        std::cout << "  " << c.name << std::string(c.name.size() < 12 ? 12 - c.name.size() : 1, ' ')
                  << c.summary << "\n";
    }
    std::cout << "\nRun 'zelvo COMMAND --help' for the options of one command.\n";
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty() || args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
        PrintHelp();
        return zelvo::cli::kExitOk;
    }
    for (const auto& c : zelvo::cli::Commands()) {
        if (c.name == args[0]) {
            std::vector<std::string> rest(args.begin() + 1, args.end());
            if (zelvo::cli::WantsHelp(rest)) {
                std::cout << c.usage;
                return zelvo::cli::kExitOk;
            }
            return c.run(rest);
        }
    }
    std::cerr << "zelvo: unknown command '" << args[0] << "'\nTry 'zelvo --help'.\n";
    return zelvo::cli::kExitUsage;
}
