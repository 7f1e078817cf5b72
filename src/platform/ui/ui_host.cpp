#include "platform/ui/ui_host.h"

#include "platform/ui/form.h"

namespace zelvo::ui {

std::vector<int> MsgBoxButtons(int style) {
    switch (style & 7) {
        case vbOKCancel: return {vbOK, vbCancel};
        case vbAbortRetryIgnore: return {vbAbort, vbRetry, vbIgnore};
        case vbYesNoCancel: return {vbYes, vbNo, vbCancel};
        case vbYesNo: return {vbYes, vbNo};
        case vbRetryCancel: return {vbRetry, vbCancel};
        default: return {vbOK};
    }
}

int MsgBoxDefaultButton(int style) {
    std::vector<int> buttons = MsgBoxButtons(style);
    size_t which = (style & 0xF00) >> 8;
    return which < buttons.size() ? buttons[which] : buttons.front();
}

const char* MsgBoxButtonName(int result) {
    switch (result) {
        case vbOK: return "OK";
        case vbCancel: return "Cancel";
        case vbAbort: return "Abort";
        case vbRetry: return "Retry";
        case vbIgnore: return "Ignore";
        case vbYes: return "Yes";
        case vbNo: return "No";
        default: return "?";
    }
}

int UiHost::ShowMessageBox(const MessageBoxRequest& request) { return MsgBoxDefaultButton(request.buttons); }

std::optional<std::string> UiHost::ShowInputBox(const InputBoxRequest&) { return std::nullopt; }

std::optional<ProjectPickerAnswer> UiHost::ShowProjectPicker(const ProjectPickerRequest&) { return std::nullopt; }

void UiHost::RunWindow(Form& form) {
    form.Show();
    form.Unload();
}

namespace {

// Answers as a person who closes every dialog would.
class HeadlessHost final : public UiHost {
public:
    std::string ShowOpenDialog(const FileDialogRequest&) override { return {}; }
    std::string ShowSaveDialog(const FileDialogRequest&) override { return {}; }
};

HeadlessHost headless;
UiHost* current = &headless;

}  // namespace

UiHost& CurrentUiHost() { return *current; }

UiHost* SetUiHost(UiHost* host) {
    UiHost* previous = current == &headless ? nullptr : current;
    current = host ? host : &headless;
    return previous;
}

}  // namespace zelvo::ui
