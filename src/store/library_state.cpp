#include "store/library_state.h"

namespace zelvo {

std::string AppPath;

namespace {

std::string PathOf(const char* fileName) {
    shell::ShellPaths& paths = ShellPaths();
    paths.SetAppPath(AppPath.empty() ? shell::ProgramFolder() : AppPath);
    return shell::ShellPaths::AddSeparator(paths.GetDataFolder()) + fileName;
}

}  // namespace

std::string DatabasePath() { return PathOf(kDatabaseFileName); }
std::string OldDatabasePath() { return PathOf(kOldDatabaseFileName); }

}  // namespace zelvo
