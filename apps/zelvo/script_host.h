// The UiHost of `zelvo ui`: a person played by a script.
//
// Whenever the library waits for the person — a window's wait loop, a
// message box, an input box, a file dialog — the host takes the next steps
// of the script. Every dialog is printed as one JSON line as it comes
// ({"msgbox": …}, {"inputbox": …}, {"open": …}, {"save": …}, {"picker": …});
// `dump` prints
// a window. A dialog with no answer left is cancelled, and a window still
// waiting when the script ends is closed by its frame; both say so on the
// error stream. A step that cannot be done (an unknown window or control,
// a row that is not there, an answer where no dialog waits) is a
// ScriptError with its line.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui/ui_host.h"
#include "ui_script.h"

namespace zelvo::cli {

class ScriptUiHost : public ui::UiHost {
public:
    ScriptUiHost(UiScript& script, std::ostream& out, std::ostream& err) : script_(script), out_(out), err_(err) {}

    int ShowMessageBox(const ui::MessageBoxRequest& request) override;
    std::optional<std::string> ShowInputBox(const ui::InputBoxRequest& request) override;
    std::string ShowOpenDialog(const ui::FileDialogRequest& request) override;
    std::string ShowSaveDialog(const ui::FileDialogRequest& request) override;
    void RunWindow(ui::Form& form) override;
    std::optional<ui::ProjectPickerAnswer> ShowProjectPicker(const ui::ProjectPickerRequest& request) override;

    // Prints one JSON line of the output (a host service's call, the result).
    void Print(const std::string& json);

private:
    // The windows open now, the last on top.
    ui::Form& FindForm(const ScriptStep& step, const std::string& name) const;
    void Do(const ScriptStep& step);
    void Dump(const ScriptStep& step);
    // The `answer` step for the dialog `what`, after any dumps; nullptr when
    // the script has no step left.
    const ScriptStep* AwaitAnswer(const char* what);
    std::string FileDialog(const char* kind, const ui::FileDialogRequest& request);

    UiScript& script_;
    std::ostream& out_;
    std::ostream& err_;
    std::vector<ui::Form*> windows_;
};

}  // namespace zelvo::cli
