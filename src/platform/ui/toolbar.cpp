#include "platform/ui/toolbar.h"

#include "platform/core/error.h"

namespace zelvo::ui {

namespace {

[[noreturn]] void OutOfBounds() { throw Error(kIndexOutOfBounds, "Index out of bounds", "Toolbar"); }
[[noreturn]] void NotFound() { throw Error(kElementNotFound, "Element not found", "Toolbar"); }

}  // namespace

template <typename T, typename U>
void Button::Assign(T& field, U&& value) {
    if (field == value) return;
    field = std::forward<U>(value);
    owner_->Changed();
}

int Button::Index() const { return owner_->IndexOf(this); }
void Button::SetCaption(const std::string& caption) { Assign(caption_, caption); }
void Button::SetImage(const Variant& image) {
    // Variants compare by value and type; a changed picture is always told.
    image_ = image;
    owner_->Changed();
}
void Button::SetToolTipText(const std::string& text) { Assign(toolTip_, text); }
void Button::SetValue(int value) { Assign(value_, value ? tbrPressed : tbrUnpressed); }
void Button::SetEnabled(bool enabled) { Assign(enabled_, enabled); }
void Button::SetVisible(bool visible) { Assign(visible_, visible); }
void Button::SetStyle(int style) { Assign(style_, style); }

Button& Toolbar::Add(const std::string& key, const std::string& caption, int style, const Variant& image) {
    if (!key.empty() && IndexOf(key)) throw Error(kKeyNotUnique, "Key is not unique in collection", "Toolbar");
    buttons_.push_back(std::unique_ptr<Button>(new Button(*this, key, style)));
    Button& b = *buttons_.back();
    b.caption_ = caption;
    b.image_ = image;
    Changed();
    return b;
}

int Toolbar::IndexOf(const std::string& key) const {
    if (key.empty()) return 0;
    for (size_t i = 0; i < buttons_.size(); ++i)
        if (buttons_[i]->key_ == key) return static_cast<int>(i) + 1;
    return 0;
}

int Toolbar::IndexOf(const Button* button) const {
    for (size_t i = 0; i < buttons_.size(); ++i)
        if (buttons_[i].get() == button) return static_cast<int>(i) + 1;
    return 0;
}

Button& Toolbar::Buttons(int index) {
    if (index < 1 || index > Count()) OutOfBounds();
    return *buttons_[index - 1];
}
const Button& Toolbar::Buttons(int index) const { return const_cast<Toolbar*>(this)->Buttons(index); }

Button& Toolbar::Buttons(const std::string& key) {
    int i = IndexOf(key);
    if (!i) NotFound();
    return *buttons_[i - 1];
}
const Button& Toolbar::Buttons(const std::string& key) const { return const_cast<Toolbar*>(this)->Buttons(key); }

void Toolbar::SetImageList(std::shared_ptr<ui::ImageList> images) {
    images_ = std::move(images);
    Changed();
}

bool Toolbar::UserClick(const std::string& key) {
    Button& b = Buttons(key);
    if (!Usable() || !b.enabled_ || !b.visible_ || b.style_ == tbrSeparator || b.style_ == tbrPlaceholder)
        return false;
    if (b.style_ == tbrCheck) {
        b.SetValue(b.value_ ? tbrUnpressed : tbrPressed);
    } else if (b.style_ == tbrButtonGroup) {
        // A group is the run of group buttons around the one clicked.
        int at = b.Index() - 1;
        int first = at, last = at;
        while (first > 0 && buttons_[first - 1]->style_ == tbrButtonGroup) --first;
        while (last + 1 < Count() && buttons_[last + 1]->style_ == tbrButtonGroup) ++last;
        for (int i = first; i <= last; ++i) buttons_[i]->SetValue(i == at);
    }
    if (OnButtonClick) OnButtonClick(b);
    return true;
}

}  // namespace zelvo::ui
