// Where the project folders of the host lie, and how one is made.
//
// A project is a path text of backslash-separated folder names ("A\B") on
// one of two sides: the live projects or the archive of completed projects.
// On this system the folder of "A\B" is A/B under the root of its side:
//
//   live     ShellPaths' data folder            <app>/A/B
//   archive  ShellPaths' archive folder         <app>/.archive/A/B
//
// A path text is the same on both sides, so OtherSide gives it back as it
// is. A host with another layout replaces these helpers (SetProjectPaths,
// SetFolderMaker); the library relies only on what each call promises here.
#pragma once

#include <string>

namespace zelvo::shell {

class ProjectPaths {
public:
    virtual ~ProjectPaths() = default;

    // The root folder of the live projects (InsArcPrj False) or of the
    // archive, with a trailing separator. Made from the shared ShellPaths'
    // application folder each time.
    virtual std::string RootFolder(bool InsArcPrj) const;

    // The disk folder of `Project` on the given side, without a trailing
    // separator; the root itself for "". Whether it exists is not tested.
    // Every name stays inside the root: empty names (a leading or doubled
    // or trailing backslash) are passed over, and a name that the file
    // system would read otherwise ("..", ".", one holding '/', one starting
    // with a dot that could meet the root's own hidden folders) is written
    // with a leading '_'.
    virtual std::string FolderOf(const std::string& Project, bool InsArcPrj) const;

    // The path text that `Project` of side `InsArcPrj` has on the other side.
    virtual std::string OtherSide(const std::string& Project, bool InsArcPrj) const;
};

class FolderMaker {
public:
    virtual ~FolderMaker() = default;
    // Makes `Folder` and whatever is missing above it; an existing folder is
    // left as it is. Throws Error (75 or 76) when it cannot.
    virtual void CreateFolder(const std::string& Folder);
};

// The folder of `Project` under `root` by the rules of FolderOf: the one
// place that turns a project path into a folder, for the project paths and
// for the pickers that browse a root.
std::string FolderUnderRoot(const std::string& root, const std::string& Project);

// The project path of `folder` under `root` ("<root>/A/B" gives "A\B"),
// or "" when it lies outside it (or is the root).
std::string ProjectPathUnderRoot(const std::string& root, const std::string& folder);

// The helpers of the process. Until a host installs its own, the ones above
// serve. Set* take a helper that outlives its use (not owned); nullptr puts
// the default back. Each returns the previous one.
ProjectPaths& CurrentProjectPaths();
ProjectPaths* SetProjectPaths(ProjectPaths* paths);
FolderMaker& CurrentFolderMaker();
FolderMaker* SetFolderMaker(FolderMaker* maker);

}  // namespace zelvo::shell
