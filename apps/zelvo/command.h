// The subcommands of the `zelvo` command-line host.
//
// Each subcommand lives in a file of its own (cmd_*.cpp) and is listed once
// in the table of commands.cpp. A command gets its arguments after its name
// and returns the process's exit status: 0 success, 1 failure (with a clear
// message on stderr), 2 bad usage (with a one-line reason on stderr).
#pragma once

#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/terminal_host.h"
#include "zelvo/error.h"

namespace zelvo::cli {

constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

struct Command {
    std::string_view name;
    std::string_view summary;  // one line for `zelvo --help`
    std::string_view usage;    // the whole text of `zelvo NAME --help`
    int (*run)(std::span<const std::string> args);
};

// Every command, in the order `zelvo --help` lists them.
std::span<const Command> Commands();

// Prints "zelvo NAME: REASON" and a pointer to --help on stderr; returns 2.
int UsageError(std::string_view command, std::string_view reason);

// True when args hold --help or -h.
bool WantsHelp(std::span<const std::string> args);

// Options of the host given before the command's name (and, for the
// commands that take them, among its own arguments).
struct HostOptions {
    std::optional<std::string> appPath;  // --app-path DIR
    std::deque<std::string> answers;     // --answer TEXT…, for the input boxes in order
    // The UiHost of the process while a command runs; a command that takes
    // --answer among its own options adds them here.
    ui::TerminalUiHost* terminal = nullptr;
};
HostOptions& Host();

// The application folder: --app-path, else $XDG_DATA_HOME/zelvo (that is
// ~/.local/share/zelvo).
std::string HostAppPath();

// Tells why `command` could not read the book at `bookPath`: a missing book
// with the command that makes one, any other error with its number. Returns
// kExitFailure, the status such a failure ends with.
int ReportBookError(std::string_view command, const std::string& bookPath, const Error& e);

}  // namespace zelvo::cli
