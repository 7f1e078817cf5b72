#include "platform/shell/project_paths.h"

#include "platform/shell/file_system.h"
#include "platform/shell/shell_paths.h"

namespace zelvo::shell {

namespace {

// One folder name of a project path as a name on the disk.
std::string DiskName(std::string name) {
    for (char& c : name)
        if (c == '/' || c == '\0') c = '_';
    if (name[0] == '.') name.insert(name.begin(), '_');
    return name;
}

ProjectPaths* gPaths = nullptr;
FolderMaker* gMaker = nullptr;

}  // namespace

std::string ProjectPaths::RootFolder(bool InsArcPrj) const {
    const ShellPaths& shell = SharedShellPaths();
    return InsArcPrj ? shell.GetArchiveFolder() : shell.GetDataFolder();
}

std::string ProjectPaths::FolderOf(const std::string& Project, bool InsArcPrj) const {
    return FolderUnderRoot(RootFolder(InsArcPrj), Project);
}

std::string FolderUnderRoot(const std::string& root, const std::string& Project) {
    std::string folder = root;
    if (!folder.empty() && folder.back() == '/') folder.pop_back();
    size_t start = 0;
    while (start <= Project.size()) {
        size_t end = Project.find('\\', start);
        if (end == std::string::npos) end = Project.size();
        if (end > start) folder += "/" + DiskName(Project.substr(start, end - start));
        start = end + 1;
    }
    return folder;
}

std::string ProjectPathUnderRoot(const std::string& root, const std::string& folder) {
    std::string base = root;
    while (!base.empty() && base.back() == '/') base.pop_back();
    if (folder.size() <= base.size() + 1 || folder.compare(0, base.size(), base) != 0 || folder[base.size()] != '/')
        return {};
    std::string path = folder.substr(base.size() + 1);
    while (!path.empty() && path.back() == '/') path.pop_back();
    for (char& c : path)
        if (c == '/') c = '\\';
    return path;
}

std::string ProjectPaths::OtherSide(const std::string& Project, bool /*InsArcPrj*/) const { return Project; }

void FolderMaker::CreateFolder(const std::string& Folder) { shell::CreateFolder(Folder); }

ProjectPaths& CurrentProjectPaths() {
    static ProjectPaths standard;
    return gPaths ? *gPaths : standard;
}

ProjectPaths* SetProjectPaths(ProjectPaths* paths) {
    ProjectPaths* previous = gPaths;
    gPaths = paths;
    return previous;
}

FolderMaker& CurrentFolderMaker() {
    static FolderMaker standard;
    return gMaker ? *gMaker : standard;
}

FolderMaker* SetFolderMaker(FolderMaker* maker) {
    FolderMaker* previous = gMaker;
    gMaker = maker;
    return previous;
}

}  // namespace zelvo::shell
