#include "script_host.h"

#include <algorithm>
#include <ostream>

#include "form_json.h"
#include "json_writer.h"
#include "platform/shell/project_paths.h"
#include "platform/ui/form.h"

namespace zelvo::cli {

void ScriptUiHost::Print(const std::string& json) { out_ << json << "\n" << std::flush; }

ui::Form& ScriptUiHost::FindForm(const ScriptStep& step, const std::string& name) const {
    if (windows_.empty()) script_.Fail(step, "no window is open");
    if (name.empty()) return *windows_.back();
    for (auto it = windows_.rbegin(); it != windows_.rend(); ++it)
        if ((*it)->Name() == name) return **it;
    script_.Fail(step, "no window '" + name + "' is open");
}

void ScriptUiHost::Dump(const ScriptStep& step) { Print(FormJson(FindForm(step, step.form))); }

void ScriptUiHost::Do(const ScriptStep& step) {
    if (step.verb == "dump") return Dump(step);
    if (step.verb == "answer") script_.Fail(step, "answer, but no dialog is waiting");
    ui::Form& form = FindForm(step, step.form);
    if (step.verb == "close") {
        form.Unload();
        return;
    }
    std::optional<ui::ControlRef> control = form.FindControl(step.control);
    if (!control) script_.Fail(step, form.Name() + " has no control '" + step.control + "'");
    const std::string where = step.form + "." + step.control;
    auto wrongKind = [&]() { script_.Fail(step, "cannot " + step.verb + " " + where); };
    auto checkRow = [&](int row, int count) {
        if (row > count)
            script_.Fail(step, where + " has " + std::to_string(count) + " rows, not " + std::to_string(row));
    };

    bool done = false;
    if (step.verb == "click") {
        if (auto tb = std::get_if<ui::Toolbar*>(&*control)) {
            if (step.key.empty()) script_.Fail(step, "click " + where + " needs the button's key: " + where + ":KEY");
            if (!(*tb)->Exists(step.key)) script_.Fail(step, where + " has no button '" + step.key + "'");
            done = (*tb)->UserClick(step.key);
        } else if (auto menu = std::get_if<ui::Menu*>(&*control); menu && !step.key.empty()) {
            ui::Menu* item = (*menu)->Find(step.key);
            if (!item || item == *menu) script_.Fail(step, where + " has no item '" + step.key + "'");
            done = item->UserClick();
        } else if (!step.key.empty()) {
            script_.Fail(step, where + " is no toolbar");
        } else if (auto b = std::get_if<ui::CommandButton*>(&*control)) {
            done = (*b)->UserClick();
        } else if (auto m = std::get_if<ui::Menu*>(&*control)) {
            done = (*m)->UserClick();
        } else {
            wrongKind();
        }
    } else if (step.verb == "select" || step.verb == "dblclick") {
        if (auto lv = std::get_if<ui::ListView*>(&*control)) {
            for (int r : step.rows) checkRow(r, (*lv)->ListItems().Count());
            done = step.verb == "select" ? (*lv)->UserSelect(step.rows) : (*lv)->UserDblClick(step.rows[0]);
        } else if (step.verb == "dblclick") {
            wrongKind();
        } else if (auto tabs = std::get_if<ui::TabStrip*>(&*control)) {
            checkRow(step.rows[0], (*tabs)->Tabs());
            done = (*tabs)->UserSelect(step.rows[0] - 1);
        } else if (auto combo = std::get_if<ui::ComboBox*>(&*control)) {
            checkRow(step.rows[0], (*combo)->ListCount());
            done = (*combo)->UserSelect(step.rows[0] - 1);
        } else {
            wrongKind();
        }
    } else if (step.verb == "type") {
        if (auto t = std::get_if<ui::TextBox*>(&*control)) done = (*t)->UserType(step.text);
        else if (auto c = std::get_if<ui::ComboBox*>(&*control)) done = (*c)->UserType(step.text);
        else wrongKind();
    }
    // A person's click on a greyed control does nothing; the script goes on.
    if (!done)
        err_ << script_.Name() << ":" << step.line << ": " << where << (step.key.empty() ? "" : ":" + step.key)
             << " is disabled, hidden or read-only; nothing happens\n";
}

void ScriptUiHost::RunWindow(ui::Form& form) {
    windows_.push_back(&form);
    form.Show();
    // Whatever way this call is left, the window is no longer on the stack.
    struct Pop {
        std::vector<ui::Form*>& w;
        ~Pop() { w.pop_back(); }
    } pop{windows_};
    while (form.Visible()) {
        if (script_.AtEnd()) {
            err_ << script_.Name() << ": the script ended while " << form.Name()
                 << " was open; it is closed by its frame\n";
            form.Unload();
            break;
        }
        Do(script_.Take());
    }
}

const ScriptStep* ScriptUiHost::AwaitAnswer(const char* what) {
    while (!script_.AtEnd()) {
        const ScriptStep& step = script_.Take();
        if (step.verb == "answer") return &step;
        if (step.verb == "dump") {
            Dump(step);
            continue;
        }
        script_.Fail(step, std::string("a ") + what + " is waiting for an answer, not for " + step.verb);
    }
    err_ << script_.Name() << ": no answer left for the " << what << "; it is cancelled\n";
    return nullptr;
}

int ScriptUiHost::ShowMessageBox(const ui::MessageBoxRequest& request) {
    Print("{\"msgbox\": {\"prompt\": " + JsonString(request.prompt) + ", \"style\": " +
          std::to_string(request.buttons) + ", \"title\": " + JsonString(request.title) + "}}");
    std::vector<int> buttons = ui::MsgBoxButtons(request.buttons);
    const ScriptStep* answer = AwaitAnswer("message box");
    if (!answer) {
        // Cancel where the box has it; else the box's last button (No, or OK).
        return std::find(buttons.begin(), buttons.end(), ui::vbCancel) != buttons.end() ? ui::vbCancel
                                                                                          : buttons.back();
    }
    for (int b : buttons)
        if (answer->text == std::to_string(b)) return b;
    std::string allowed;
    for (int b : buttons) allowed += (allowed.empty() ? "" : ", ") + std::to_string(b) + " " + ui::MsgBoxButtonName(b);
    script_.Fail(*answer, "the message box has the buttons " + allowed + ", not '" + answer->text + "'");
}

std::optional<std::string> ScriptUiHost::ShowInputBox(const ui::InputBoxRequest& request) {
    Print("{\"inputbox\": {\"prompt\": " + JsonString(request.prompt) + ", \"title\": " + JsonString(request.title) +
          ", \"default\": " + JsonString(request.defaultText) + "}}");
    const ScriptStep* answer = AwaitAnswer("input box");
    if (!answer) return std::nullopt;
    return answer->text;
}

std::string ScriptUiHost::FileDialog(const char* kind, const ui::FileDialogRequest& request) {
    Print(std::string("{\"") + kind + "\": {\"title\": " + JsonString(request.title) + ", \"filter\": " +
          JsonString(request.filter) + ", \"fileName\": " + JsonString(request.fileName) + "}}");
    const ScriptStep* answer = AwaitAnswer("file dialog");
    return !answer || answer->text == "cancel" ? std::string() : answer->text;
}

std::string ScriptUiHost::ShowOpenDialog(const ui::FileDialogRequest& request) { return FileDialog("open", request); }
std::string ScriptUiHost::ShowSaveDialog(const ui::FileDialogRequest& request) { return FileDialog("save", request); }

std::optional<ui::ProjectPickerAnswer> ScriptUiHost::ShowProjectPicker(const ui::ProjectPickerRequest& request) {
    Print("{\"picker\": {\"root\": " + JsonString(request.rootFolder) + ", \"title\": " + JsonString(request.title) +
          ", \"path\": " + JsonString(request.path) + "}}");
    const ScriptStep* answer = AwaitAnswer("project picker");
    if (!answer || answer->text == "cancel") return std::nullopt;
    return ui::ProjectPickerAnswer{answer->text, shell::FolderUnderRoot(request.rootFolder, answer->text)};
}

}  // namespace zelvo::cli
