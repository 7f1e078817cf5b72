// The script of `zelvo ui`: what a person does in the library's windows and
// dialogs, one step a line, read whole before the call so that a bad line
// is found before anything runs.
//
//   dump [FORM]                 print the window (the one on top by default)
//   click FORM.CONTROL          a button or a menu item
//   click FORM.TOOLBAR:KEY      a toolbar's button, or a popup menu's item
//   select FORM.LIST N[,M…]     rows from 1 (the item click on the first);
//                               also a tab (from 1) or a combo box entry
//   dblclick FORM.LIST N        a double click on a row
//   type FORM.CONTROL TEXT      replace the text of a text or combo box
//   close FORM                  the frame's close button
//   answer VALUE                the next message box (1 OK, 2 Cancel, 6 Yes,
//                               7 No …), input box (a text) or picker (a
//                               path, or cancel)
//
// A TEXT or VALUE runs to the end of the line as written; one that starts
// with a double quote is a JSON string, for tabs, line breaks, quotes and
// blanks at the ends. Blank lines and lines starting with '#' are skipped.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace zelvo::cli {

// A script that cannot run as written: the message names the file and line.
class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct ScriptStep {
    int line = 0;
    std::string verb;     // dump, click, select, dblclick, type, close, answer
    std::string form;     // "" for dump without a form and for answer
    std::string control;  // click, select, dblclick, type
    std::string key;      // click FORM.TOOLBAR:KEY
    std::vector<int> rows;  // select, dblclick: from 1
    std::string text;     // type, answer
};

class UiScript {
public:
    // Reads and checks the script at `path`. A file that is missing or
    // unreadable, or a line that is no step, is a ScriptError.
    static UiScript Read(const std::string& path);
    // The same from a text, for tests; `name` stands for the file.
    static UiScript Parse(const std::string& text, const std::string& name);

    bool AtEnd() const { return next_ >= steps_.size(); }
    const ScriptStep& Peek() const { return steps_[next_]; }
    const ScriptStep& Take() { return steps_[next_++]; }
    const std::string& Name() const { return name_; }
    size_t Left() const { return steps_.size() - next_; }

    // "FILE:LINE: what" as a ScriptError.
    [[noreturn]] void Fail(const ScriptStep& step, const std::string& what) const;

private:
    std::string name_;
    std::vector<ScriptStep> steps_;
    size_t next_ = 0;
};

}  // namespace zelvo::cli
