// A UiHost for tests: answers come from queues the test fills beforehand,
// and every dialog shown is written to a log the test can read back.
//
// A dialog with no answer queued gets the answer of a person who only
// confirms or closes: a message box its default button, an input box and a
// file dialog "cancelled". Unanswered() counts those, so a test can tell a
// prompt it did not expect.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui/ui_host.h"

namespace zelvo::ui {

class ScriptedUiHost : public UiHost {
public:
    struct Shown {
        enum Kind { MessageBox, InputBox, OpenDialog, SaveDialog, Window } kind;
        std::string prompt;  // a file dialog's title; a window's name
        std::string title;
        int buttons = 0;          // message box style
        std::string defaultText;  // input box default, file dialog's proposed name
    };

    void QueueMessageBoxAnswer(int button) { messageAnswers_.push_back(button); }
    // nullopt: the person cancels.
    void QueueInputBoxAnswer(std::optional<std::string> text) { inputAnswers_.push_back(std::move(text)); }
    // "": the person cancels.
    void QueueFileDialogAnswer(std::string path) { fileAnswers_.push_back(std::move(path)); }

    // What the person does in the next window shown through RunWindow. The
    // window is closed by its frame afterwards if the action left it
    // visible; a window with no action queued is closed at once.
    void QueueWindowAction(std::function<void(Form&)> action) { windowActions_.push_back(std::move(action)); }

    // The project path the person picks in the next project picker
    // (nullopt: cancels); the folder given with it is the path's folders
    // under the picker's root.
    void QueueProjectPickerAnswer(std::optional<std::string> path) { pickerAnswers_.push_back(std::move(path)); }
    // Every project picker shown, in order.
    const std::vector<ProjectPickerRequest>& PickerLog() const { return pickerLog_; }

    const std::vector<Shown>& Log() const { return log_; }
    int Unanswered() const { return unanswered_; }
    // Answers still queued at the end of a test mean a dialog did not come.
    bool AllAnswersUsed() const {
        return messageAnswers_.empty() && inputAnswers_.empty() && fileAnswers_.empty() &&
               windowActions_.empty() && pickerAnswers_.empty();
    }

    int ShowMessageBox(const MessageBoxRequest& request) override;
    std::optional<std::string> ShowInputBox(const InputBoxRequest& request) override;
    std::string ShowOpenDialog(const FileDialogRequest& request) override;
    std::string ShowSaveDialog(const FileDialogRequest& request) override;
    void RunWindow(Form& form) override;
    void DoEvents() override { ++doEvents_; }
    std::optional<ProjectPickerAnswer> ShowProjectPicker(const ProjectPickerRequest& request) override;
    // How often the library let events run.
    int DoEventsCalls() const { return doEvents_; }

private:
    std::string FileAnswer(Shown::Kind kind, const FileDialogRequest& request);

    std::deque<int> messageAnswers_;
    std::deque<std::optional<std::string>> inputAnswers_;
    std::deque<std::string> fileAnswers_;
    std::deque<std::function<void(Form&)>> windowActions_;
    int doEvents_ = 0;
    std::deque<std::optional<std::string>> pickerAnswers_;
    std::vector<ProjectPickerRequest> pickerLog_;
    std::vector<Shown> log_;
    int unanswered_ = 0;
};

// Installs a host for the life of the scope and puts the previous one back.
class ScopedUiHost {
public:
    explicit ScopedUiHost(UiHost& host) : previous_(SetUiHost(&host)) {}
    ~ScopedUiHost() { SetUiHost(previous_); }
    ScopedUiHost(const ScopedUiHost&) = delete;
    ScopedUiHost& operator=(const ScopedUiHost&) = delete;

private:
    UiHost* previous_;
};

}  // namespace zelvo::ui
