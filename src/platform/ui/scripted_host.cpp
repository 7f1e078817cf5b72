#include "platform/ui/scripted_host.h"

#include "platform/shell/project_paths.h"
#include "platform/ui/form.h"

namespace zelvo::ui {

int ScriptedUiHost::ShowMessageBox(const MessageBoxRequest& request) {
    log_.push_back({Shown::MessageBox, request.prompt, request.title, request.buttons, {}});
    if (messageAnswers_.empty()) {
        ++unanswered_;
        return MsgBoxDefaultButton(request.buttons);
    }
    int answer = messageAnswers_.front();
    messageAnswers_.pop_front();
    return answer;
}

std::optional<std::string> ScriptedUiHost::ShowInputBox(const InputBoxRequest& request) {
    log_.push_back({Shown::InputBox, request.prompt, request.title, 0, request.defaultText});
    if (inputAnswers_.empty()) {
        ++unanswered_;
        return std::nullopt;
    }
    auto answer = std::move(inputAnswers_.front());
    inputAnswers_.pop_front();
    return answer;
}

std::string ScriptedUiHost::FileAnswer(Shown::Kind kind, const FileDialogRequest& request) {
    log_.push_back({kind, request.title, request.title, 0, request.fileName});
    if (fileAnswers_.empty()) {
        ++unanswered_;
        return {};
    }
    std::string answer = std::move(fileAnswers_.front());
    fileAnswers_.pop_front();
    return answer;
}

std::string ScriptedUiHost::ShowOpenDialog(const FileDialogRequest& request) {
    return FileAnswer(Shown::OpenDialog, request);
}

std::string ScriptedUiHost::ShowSaveDialog(const FileDialogRequest& request) {
    return FileAnswer(Shown::SaveDialog, request);
}

void ScriptedUiHost::RunWindow(Form& form) {
    log_.push_back({Shown::Window, form.Name(), form.Caption(), 0, {}});
    form.Show();
    if (windowActions_.empty()) {
        ++unanswered_;
    } else {
        auto action = std::move(windowActions_.front());
        windowActions_.pop_front();
        action(form);
    }
    if (form.Visible()) form.Unload();
}

std::optional<ProjectPickerAnswer> ScriptedUiHost::ShowProjectPicker(const ProjectPickerRequest& request) {
    pickerLog_.push_back(request);
    if (pickerAnswers_.empty()) {
        ++unanswered_;
        return std::nullopt;
    }
    auto path = std::move(pickerAnswers_.front());
    pickerAnswers_.pop_front();
    if (!path) return std::nullopt;
    return ProjectPickerAnswer{*path, shell::FolderUnderRoot(request.rootFolder, *path)};
}

}  // namespace zelvo::ui
