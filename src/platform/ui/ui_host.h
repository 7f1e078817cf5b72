// What a window or a component asks of a person or of the desktop.
//
// The library never talks to a screen. Whatever needs an answer from the
// person — a file to open, a message to confirm — goes through the `UiHost`
// the process runs with. The command-line host, the desktop host and the
// scripted host of the tests each implement it.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zelvo::ui {

class Form;

// The common file dialog's settings, as the caller fills them.
struct FileDialogRequest {
    std::string title;
    // Filter in the common dialog's form: "vCard (*.vcf)|*.vcf|All files|*.*".
    std::string filter;
    std::string defaultExtension;  // without the dot, e.g. "vcf"
    std::string initialFolder;
    std::string fileName;          // proposed name (save) or preselected (open)
};

// Message box styles: one button set, plus an icon, plus the default button.
enum MsgBoxStyle : int {
    vbOKOnly = 0,
    vbOKCancel = 1,
    vbAbortRetryIgnore = 2,
    vbYesNoCancel = 3,
    vbYesNo = 4,
    vbRetryCancel = 5,
    vbCritical = 16,
    vbQuestion = 32,
    vbExclamation = 48,
    vbInformation = 64,
    vbDefaultButton2 = 256,
    vbDefaultButton3 = 512,
};

// The button a message box was closed with.
enum MsgBoxResult : int { vbOK = 1, vbCancel = 2, vbAbort = 3, vbRetry = 4, vbIgnore = 5, vbYes = 6, vbNo = 7 };

// The buttons of a style, left to right.
std::vector<int> MsgBoxButtons(int style);
// The button that is pressed when the person just confirms (the style's
// default button; the first when the style names none or too far a one).
int MsgBoxDefaultButton(int style);
// "OK", "Cancel", "Yes", ... for a result.
const char* MsgBoxButtonName(int result);

struct MessageBoxRequest {
    std::string prompt;
    int buttons = vbOKOnly;  // a MsgBoxStyle sum
    std::string title;
    std::string helpFile;
    int context = 0;
};

struct InputBoxRequest {
    std::string prompt;
    std::string title;
    std::string defaultText;  // the text the answer field starts with
    std::optional<int> xPos;  // twips from the screen's left; none: centred
    std::optional<int> yPos;
    std::string helpFile;
    int context = 0;
};

// The project picker's settings, in the order the library gives them.
struct ProjectPickerRequest {
    std::string appPath;     // the application folder
    std::string rootFolder;  // the root of the side whose folders are browsed
    std::string title;       // "" for the picker's own
    std::string path;        // the project path to open on ("A\B"); "" the root
};

// What the person chose: a project path ("A\B", backslash-separated, no
// backslash at the end) and its folder on the disk.
struct ProjectPickerAnswer {
    std::string projectPath;
    std::string folder;
};

class UiHost {
public:
    virtual ~UiHost() = default;

    // A message with buttons. Returns the MsgBoxResult of the button
    // pressed. A host that cannot ask anybody answers with the default
    // button, as this base does.
    virtual int ShowMessageBox(const MessageBoxRequest& request);

    // A text prompt. Returns the text confirmed, or nothing when the person
    // cancelled. This base cancels.
    virtual std::optional<std::string> ShowInputBox(const InputBoxRequest& request);

    // The open-file dialog. Returns the chosen path, or "" when the person
    // gave up.
    virtual std::string ShowOpenDialog(const FileDialogRequest& request) = 0;

    // The save-file dialog. Returns the chosen path, or "" when the person
    // gave up.
    virtual std::string ShowSaveDialog(const FileDialogRequest& request) = 0;

    // Shows `form` and lets the person work in it until it is no longer
    // visible (hidden by its own code or unloaded by its frame): the wait
    // loop of a window that must look modal to its caller. The window's
    // handlers run inside this call. This base, with nobody to work in the
    // window, closes it by its frame at once, so a wait never hangs.
    virtual void RunWindow(Form& form);

    // Lets pending events of the desktop run (a repaint, a click queued
    // while the library was busy). This base has none.
    virtual void DoEvents() {}

    // The project picker: a tree of the folders under `request.rootFolder`
    // to choose one from. Returns the choice, or nothing when the person
    // cancelled. This base cancels.
    virtual std::optional<ProjectPickerAnswer> ShowProjectPicker(const ProjectPickerRequest& request);
};

// The host of this process. Until a host installs itself, a headless host
// answers every dialog as cancelled.
UiHost& CurrentUiHost();

// Installs `host` (not owned; nullptr restores the headless host). Returns
// the previous one so a test can put it back.
UiHost* SetUiHost(UiHost* host);

}  // namespace zelvo::ui
