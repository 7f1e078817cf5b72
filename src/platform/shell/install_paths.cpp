#include "platform/shell/install_paths.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>

#include "platform/shell/shell_paths.h"

// The installed catalogue's place relative to the library's folder and to
// the programs' folder, worked out by the build from the install layout.
#ifndef ZELVO_LANG_FROM_LIBDIR
#define ZELVO_LANG_FROM_LIBDIR "../share/zelvo/lang"
#endif
#ifndef ZELVO_LANG_FROM_BINDIR
#define ZELVO_LANG_FROM_BINDIR "../share/zelvo/lang"
#endif

namespace zelvo::shell {

namespace fs = std::filesystem;

namespace {

std::string FindCodeFolder() {
    Dl_info info{};
    if (!dladdr(reinterpret_cast<void*>(&FindCodeFolder), &info) || !info.dli_fname) return {};
    std::error_code ec;
    fs::path file = fs::weakly_canonical(info.dli_fname, ec);
    if (ec) return {};
    return ShellPaths::AddSeparator(file.parent_path().string());
}

}  // namespace

// The file does not move while it is loaded: found once.
std::string CodeFolder() {
    static const std::string folder = FindCodeFolder();
    return folder;
}

std::string LanguageFolder() {
    if (const char* forced = std::getenv("ZELVO_LANG_DIR"); forced && *forced)
        return ShellPaths::AddSeparator(forced);
    std::error_code ec;
    std::string besideProgram = ProgramFolder() + "lang";
    if (fs::is_directory(besideProgram, ec)) return ShellPaths::AddSeparator(besideProgram);
    std::string code = CodeFolder();
    if (!code.empty()) {
        for (const char* relative : {ZELVO_LANG_FROM_LIBDIR, ZELVO_LANG_FROM_BINDIR}) {
            fs::path installed = fs::path(code) / relative;
            if (fs::is_directory(installed, ec))
                return ShellPaths::AddSeparator(fs::weakly_canonical(installed, ec).string());
        }
    }
    // Nothing found: the place beside the program, where a missing catalogue
    // means English defaults.
    return ShellPaths::AddSeparator(besideProgram);
}

}  // namespace zelvo::shell
