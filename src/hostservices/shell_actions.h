// The actions the windows offer that leave the address book: help, a letter,
// a web page, the correspondence view in the launcher, and the file search
// of UniDir. Each goes to the desktop through shell::CurrentDesktopServices,
// which a host or a test may replace.
//
// Settings come from Shell.ini in the settings folder (UTF-8, as the
// language catalogues: "[Section]" lines and "Key=Value" lines):
//
//   [Mail]
//   UseExternalMailer=True      letters go to the system's mail client
//   [Launcher]
//   Command=/usr/bin/program    the program of the correspondence view
//
// A missing file or key reads as False and as no launcher.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/core/variant.h"

namespace zelvo {

// The file name the help message names when the manual is missing. The
// manual is an HTML page beside the language catalogues (lang/<language>/
// zelvo.html), where a Windows build had its compiled help file.
inline constexpr const char* kManualFileName = "zelvo.html";

// Shows the manual at `Topic` ("frmMain.HTM": the part on that window). With
// no manual installed, warns (style 48) that it was not found, naming it on
// a line of its own. `hWnd` is accepted for the caller and not used.
void ShowHelp(const std::string& Topic, std::int64_t hWnd = 0);

// Opens the system's mail client on "mailto:" + Address. Report style: a
// failure to start it is reported with the label
// "Zelvo.dll\ExecuteExternalMailer". Returns an empty Variant.
Variant ExecuteExternalMailer(const std::string& Address);

// The mail settings of the settings folder of an application folder.
class MailSettings {
public:
    void SetAppPath(const std::string& appPath) { appPath_ = appPath; }
    const std::string& AppPath() const { return appPath_; }
    // Whether letters go to the system's mail client rather than to the
    // host's mail module. Read from the file each time.
    bool UseExternalMailer() const;

private:
    std::string appPath_;
};

// The one mail settings object of the library.
MailSettings& SharedMailSettings();

// The mail action of a window, on `Address` (the selected row's text): to
// the system's mail client when the settings of `AppPath` say so, else a
// letter window of the host (ComposeLetter) for `rProject` on the side
// `inArchive`. Nothing for an empty address.
void MailAction(const std::string& Address, const std::string& AppPath, const std::string& rProject, bool inArchive);

// The web action: shows `page` in the browser.
void OpenPage(const std::string& page);

// The launcher's parameter text for `fields`:
// "42;CustomPostrel.cPostrel*LoadABPack*" then the fields parted by "*".
std::string LauncherParameters(const std::vector<std::string>& fields);

// The correspondence view of one object: starts the launcher command of the
// settings of `AppPath` with LauncherParameters(fields). With no launcher
// configured, nothing happens and nothing is said.
void StartLauncher(const std::vector<std::string>& fields, const std::string& AppPath);

// Attributes for UniDir, as the runtime numbers them.
enum DirAttributes : std::int32_t { vbNormal = 0, vbHidden = 2, vbDirectory = 16 };

// The name (without folder) of the first entry matching `PathName`, a path
// whose last part may hold the wildcards * and ?; files only, and with
// vbDirectory folders too; entries starting with a dot only with vbHidden.
// Names are taken in sorted order. "" when nothing matches.
std::string UniDir(const std::string& PathName, std::int32_t Attributes = vbNormal);

}  // namespace zelvo
