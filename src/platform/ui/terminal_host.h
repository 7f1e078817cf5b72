// The UiHost of the command-line host.
//
// Messages go to the error stream, so that standard output keeps only what
// a command prints as its result. An input box takes the next of the
// answers given beforehand (zelvo's --answer options, in order); with none
// left it asks on the terminal when there is one; otherwise it counts as
// cancelled. A question with several buttons and the file dialogs are asked
// on the terminal too; without one a question gets its default button and a
// file dialog is cancelled.
#pragma once

#include <deque>
#include <iosfwd>
#include <string>

#include "platform/ui/ui_host.h"

namespace zelvo::ui {

class TerminalUiHost : public UiHost {
public:
    // `interactive`: whether `in` is a person at a terminal.
    TerminalUiHost(std::istream& in, std::ostream& out, bool interactive, std::deque<std::string> answers = {});

    // Whether standard input and standard error are both a terminal.
    static bool StdioIsTerminal();

    int ShowMessageBox(const MessageBoxRequest& request) override;
    std::optional<std::string> ShowInputBox(const InputBoxRequest& request) override;
    std::string ShowOpenDialog(const FileDialogRequest& request) override;
    std::string ShowSaveDialog(const FileDialogRequest& request) override;
    // The project picker: the next answer given beforehand is the project
    // path; else, at a terminal, the tree of folders under the root is shown
    // numbered, and a number or a typed path chooses.
    std::optional<ProjectPickerAnswer> ShowProjectPicker(const ProjectPickerRequest& request) override;

    // One more answer given beforehand, after those already queued.
    void AddAnswer(std::string answer) { answers_.push_back(std::move(answer)); }
    // Answers given beforehand and not yet used.
    size_t AnswersLeft() const { return answers_.size(); }

private:
    std::optional<std::string> ReadLine();
    std::string AskPath(const char* what, const FileDialogRequest& request);

    std::istream& in_;
    std::ostream& out_;
    bool interactive_;
    std::deque<std::string> answers_;
};

}  // namespace zelvo::ui
