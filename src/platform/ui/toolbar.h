// A toolbar: a row of buttons found by their key or their 1-based place.
//
// What callers rely on, as with the control the book was written for:
//  - A button's `Value` is 1 (pressed) or 0. A person's click on a check
//    button toggles it; on a group button it presses that one and releases
//    the other group buttons next to it. Code may set any Value directly.
//  - `OnButtonClick` runs after a person's click, with the key; a click on
//    a disabled or hidden button (or on a disabled toolbar) does nothing.
//  - Keys are unique (35602); an unknown key is 35601, a bad index 35600.
//  - Every change of the toolbar or one of its buttons is told to the
//    toolbar's observers.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/listview.h"
#include "platform/ui/observable.h"

namespace zelvo::ui {

enum ButtonStyle : int {
    tbrDefault = 0,
    tbrCheck = 1,
    tbrButtonGroup = 2,
    tbrSeparator = 3,
    tbrPlaceholder = 4,
    tbrDropdown = 5,
};
enum ButtonValue : int { tbrUnpressed = 0, tbrPressed = 1 };

class Toolbar;

class Button {
public:
    const std::string& Key() const { return key_; }
    int Index() const;

    const std::string& Caption() const { return caption_; }
    void SetCaption(const std::string& caption);
    // The key (or 1-based index) of the picture in the toolbar's ImageList.
    const Variant& Image() const { return image_; }
    void SetImage(const Variant& image);
    const std::string& ToolTipText() const { return toolTip_; }
    void SetToolTipText(const std::string& text);
    int Value() const { return value_; }
    void SetValue(int value);
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);
    bool Visible() const { return visible_; }
    void SetVisible(bool visible);
    int Style() const { return style_; }
    void SetStyle(int style);

private:
    friend class Toolbar;
    Button(Toolbar& owner, std::string key, int style) : owner_(&owner), key_(std::move(key)), style_(style) {}
    template <typename T, typename U>
    void Assign(T& field, U&& value);

    Toolbar* owner_;
    std::string key_;
    std::string caption_;
    Variant image_;
    std::string toolTip_;
    int value_ = tbrUnpressed;
    bool enabled_ = true;
    bool visible_ = true;
    int style_ = tbrDefault;
};

class Toolbar : public Control {
public:
    // Buttons are added by the window when it builds itself. A non-empty key
    // must be new (35602).
    Button& Add(const std::string& key = {}, const std::string& caption = {}, int style = tbrDefault,
                const Variant& image = {});
    int Count() const { return static_cast<int>(buttons_.size()); }
    Button& Buttons(int index);                        // 35600
    const Button& Buttons(int index) const;            // 35600
    Button& Buttons(const std::string& key);           // 35601
    const Button& Buttons(const std::string& key) const;  // 35601
    bool Exists(const std::string& key) const { return IndexOf(key) != 0; }

    // The pictures the buttons' Image refers to.
    const std::shared_ptr<ui::ImageList>& ImageList() const { return images_; }
    void SetImageList(std::shared_ptr<ui::ImageList> images);

    std::function<void(Button&)> OnButtonClick;

    // The person clicks the button of `key` (35601 if there is none).
    // Returns false, changing nothing, when the toolbar or the button is
    // disabled or hidden, or the button is a separator or a placeholder.
    bool UserClick(const std::string& key);

private:
    friend class Button;
    int IndexOf(const std::string& key) const;  // 0 when absent
    int IndexOf(const Button* button) const;

    std::vector<std::unique_ptr<Button>> buttons_;
    std::shared_ptr<ui::ImageList> images_;
};

}  // namespace zelvo::ui
