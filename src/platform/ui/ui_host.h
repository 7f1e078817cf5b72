// What a window or a component asks of a person or of the desktop.
//
// The library never talks to a screen. Whatever needs an answer from the
// person — a file to open, a message to confirm — goes through the `UiHost`
// the process runs with. The command-line host, the desktop host and the
// scripted host of the tests each implement it.
#pragma once

#include <string>

namespace zelvo::ui {

// The common file dialog's settings, as the caller fills them.
struct FileDialogRequest {
    std::string title;
    // Filter in the common dialog's form: "vCard (*.vcf)|*.vcf|All files|*.*".
    std::string filter;
    std::string defaultExtension;  // without the dot, e.g. "vcf"
    std::string initialFolder;
    std::string fileName;          // proposed name (save) or preselected (open)
};

class UiHost {
public:
    virtual ~UiHost() = default;

    // The open-file dialog. Returns the chosen path, or "" when the person
    // gave up.
    virtual std::string ShowOpenDialog(const FileDialogRequest& request) = 0;

    // The save-file dialog. Returns the chosen path, or "" when the person
    // gave up.
    virtual std::string ShowSaveDialog(const FileDialogRequest& request) = 0;
};

// The host of this process. Until a host installs itself, a headless host
// answers every dialog as cancelled.
UiHost& CurrentUiHost();

// Installs `host` (not owned; nullptr restores the headless host). Returns
// the previous one so a test can put it back.
UiHost* SetUiHost(UiHost* host);

}  // namespace zelvo::ui
