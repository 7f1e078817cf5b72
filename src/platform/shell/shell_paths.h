// ShellPaths: where the library's files live, how paths are joined, and
// where a report-style routine sends its error.
//
// Every folder comes from the application folder (`SetAppPath`):
//
//   <app>/                 the data folder: the book AddressBookW.mdb and the
//                          root of the live project folders
//   <app>/.archive/        the root of the archive of completed projects
//   <app>/.settings/       Custom.ini and the error log zelvo.log
//
// The two inner folders start with a dot so that the project tree, which is
// the data folder itself, never shows them as projects. With no application
// folder set, the folder of the running program stands in for it.
//
// Earlier installations kept their book beside the program; `GetOldDataPath`
// names that place so the book can be brought over once.
//
// Nothing here creates a folder or tests that a file exists, except
// `ReportError`, which makes the settings folder for its log.
#pragma once

#include <string>
#include <string_view>

#include "platform/core/error.h"

namespace zelvo::shell {

class ShellPaths {
public:
    // The application folder; "" means the folder of the running program.
    // Called before any folder is asked for.
    void SetAppPath(const std::string& folder);
    const std::string& AppPath() const { return appPath_; }

    // `folder` with one trailing '/'; "" stays "".
    static std::string AddSeparator(const std::string& folder);

    // Folders, each with a trailing separator.
    std::string GetDataFolder() const;
    std::string GetArchiveFolder() const;
    std::string GetSettingsFolder() const;

    // The host's current folder (a project folder the person is looking
    // at), as the host last set it; the data folder when it set none.
    std::string GetCurrentFolder() const;
    void SetCurrentFolder(const std::string& folder);

    // Whether `path` lies in the archive root (the root itself included).
    // Compares whole path components, so ".archive2/x" is not inside.
    bool IsArchivePath(const std::string& path) const;

    // Where an earlier installation kept a database of the file name of
    // `path`: that name in the folder of the running program. The result may
    // or may not name a file.
    std::string GetOldDataPath(const std::string& path) const;

    // Writes one line to stderr and appends it to <settings>/zelvo.log:
    // time, `label`, the error's number, text and source. Never throws;
    // a log that cannot be written is passed over.
    void ReportError(const ErrObject& err, std::string_view label) const;
    void ReportError(const Error& err, std::string_view label) const;
    // How many reports were made in this process (a host tells from it
    // whether a call it made ended in a report).
    int ReportCount() const { return reports_; }

    // Pieces of paths, for file names made from a person's or a card's name.
    // A name fit for the disk: '/', '\\', control characters and the
    // characters other systems forbid (<>:"|?*) become '_', trailing blanks
    // and dots go; an empty result is "_".
    static std::string ToWinName(const std::string& name);
    static std::string GetFolderOfPath(const std::string& path);  // "a/b/c.vcf" -> "a/b/"
    static std::string GetFileOfPath(const std::string& path);    // "a/b/c.vcf" -> "c.vcf"
    static std::string GetExtension(const std::string& path);     // "c.vcf" -> "vcf"; "c" -> ""
    static std::string StripExtension(const std::string& name);   // "c.vcf" -> "c"

    // GetParentFolderName / GetFileName of the file system object.
    static std::string GetParentFolderName(const std::string& path);  // no trailing separator
    static std::string GetFileName(const std::string& path);

private:
    std::string Base() const;  // the application folder or the program's, with separator
    std::string appPath_;
    std::string currentFolder_;
    mutable int reports_ = 0;
};

// The folder of the running program (the executable that holds the
// library), with a trailing separator.
std::string ProgramFolder();
// Tests and hosts that ship their data elsewhere replace it; "" restores the
// real one.
void SetProgramFolder(const std::string& folder);

// The one ShellPaths of the process, made on first use.
ShellPaths& SharedShellPaths();

}  // namespace zelvo::shell
