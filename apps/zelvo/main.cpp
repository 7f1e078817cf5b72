// zelvo: the command-line host of the address book.
#include <iostream>
#include <string>
#include <vector>

#include "command.h"
#include "platform/ui/terminal_host.h"

namespace {

void PrintHelp() {
    std::cout << "Usage: zelvo [--app-path DIR] [--answer TEXT]... COMMAND [OPTIONS] [ARGS]\n\n"
                 "The address book on the command line. The book is the file\n"
                 "AddressBookW.mdb in the application folder, by default\n"
                 "$XDG_DATA_HOME/zelvo (that is ~/.local/share/zelvo).\n\n"
                 "Start with:\n"
                 "  zelvo correct-db              make the book (or bring an old one up to date)\n"
                 "  zelvo list                    the persons who are in no project\n"
                 "  zelvo list --project 'A\\B'    the members of the project A\\B\n"
                 "  zelvo call Navigate --set 'rProject=A\\B'   the same through the automation object\n"
                 "\nCommands:\n";
    for (const auto& c : zelvo::cli::Commands()) {
        std::cout << "  " << c.name << std::string(c.name.size() < 12 ? 12 - c.name.size() : 1, ' ')
                  << c.summary << "\n";
    }
    std::cout << "\nOptions before the command:\n"
                 "  --app-path DIR  the application folder, which holds the book\n"
                 "  --answer TEXT   the answer to the next text prompt of the library; give\n"
                 "                  it once a prompt, in order. Without one left, a prompt is\n"
                 "                  asked on the terminal, or else counts as cancelled\n"
                 "\nRun 'zelvo COMMAND --help' for the options of one command.\n";
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    // The host's own options come before the command.
    auto& host = zelvo::cli::Host();
    size_t first = 0;
    while (first < args.size() && (args[first] == "--app-path" || args[first] == "--answer")) {
        if (first + 1 >= args.size()) {
            std::cerr << "zelvo: " << args[first] << " needs a value\nTry 'zelvo --help'.\n";
            return zelvo::cli::kExitUsage;
        }
        if (args[first] == "--app-path") host.appPath = args[first + 1];
        else host.answers.push_back(args[first + 1]);
        first += 2;
    }
    args.erase(args.begin(), args.begin() + static_cast<std::ptrdiff_t>(first));

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
            // Prompts of the library are answered by the options, then the terminal.
            zelvo::ui::TerminalUiHost terminal(std::cin, std::cerr, zelvo::ui::TerminalUiHost::StdioIsTerminal(),
                                               std::move(host.answers));
            zelvo::ui::SetUiHost(&terminal);
            host.terminal = &terminal;
            int status = c.run(rest);
            host.terminal = nullptr;
            zelvo::ui::SetUiHost(nullptr);
            return status;
        }
    }
    std::cerr << "zelvo: unknown command '" << args[0] << "'\nTry 'zelvo --help'.\n";
    return zelvo::cli::kExitUsage;
}
