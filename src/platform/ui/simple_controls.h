// The simple controls: a text box, a label and a push button.
//
// A text box: one text a person can type into. `OnChange` runs after every
// change of the text, whether the person typed it or the code set it, as the
// windows of the book expect (their Change handlers save what was set).
#pragma once

#include <functional>
#include <string>

#include "platform/ui/observable.h"

namespace zelvo::ui {

class TextBox : public Control {
public:
    const std::string& Text() const { return text_; }
    void SetText(const std::string& text) {
        if (text == text_) return;
        text_ = text;
        Changed();
        if (OnChange) OnChange();
    }
    // A locked box shows its text but takes no typing.
    bool Locked() const { return locked_; }
    void SetLocked(bool locked) { Assign(locked_, locked); }
    bool MultiLine = false;

    std::function<void()> OnChange;

    // The person replaces the text. False, and nothing changes, when the box
    // is disabled, hidden or locked.
    bool UserType(const std::string& text) {
        if (!Usable() || locked_) return false;
        SetText(text);
        return true;
    }

private:
    std::string text_;
    bool locked_ = false;
};

// A label: a caption beside other controls.
class Label : public Control {
public:
    const std::string& Caption() const { return caption_; }
    void SetCaption(const std::string& caption) { Assign(caption_, caption); }

private:
    std::string caption_;
};

// A push button. `Default` is the button Enter presses, `Cancel` the one
// Escape presses; a host maps them to its own keys.
class CommandButton : public Control {
public:
    const std::string& Caption() const { return caption_; }
    void SetCaption(const std::string& caption) { Assign(caption_, caption); }
    bool Default = false;
    bool Cancel = false;

    std::function<void()> OnClick;

    // The person presses the button: runs OnClick unless the button is
    // disabled or hidden (then false).
    bool UserClick() {
        if (!Usable()) return false;
        if (OnClick) OnClick();
        return true;
    }

private:
    std::string caption_;
};

}  // namespace zelvo::ui
