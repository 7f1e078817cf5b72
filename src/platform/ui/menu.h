// A menu: an item with a caption that may be checked, and sub-items of its
// own (a popup menu is an item whose sub-items are shown). Every change of an
// item is told to its observers and to those of the items above it, so a
// host that observes the top item sees the whole menu.
//
// `OnClick` runs when the person chooses the item; an item that is disabled
// or hidden, or that opens sub-items, cannot be chosen.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/observable.h"

namespace zelvo::ui {

class Menu : public Control {
public:
    Menu() = default;
    explicit Menu(std::string name, std::string caption = {}) : name_(std::move(name)), caption_(std::move(caption)) {}

    const std::string& Name() const { return name_; }
    const std::string& Caption() const { return caption_; }
    void SetCaption(const std::string& caption) { Assign(caption_, caption); }
    bool Checked() const { return checked_; }
    void SetChecked(bool checked) { Assign(checked_, checked); }
    // A separator line: the caption "-", as the book's menus write it.
    bool IsSeparator() const { return caption_ == "-"; }

    // A new sub-item at the end; the reference stays valid while this item lives.
    Menu& Add(const std::string& name, const std::string& caption);
    int Count() const { return static_cast<int>(items_.size()); }
    Menu& Item(int index);  // from 1; 35600
    const Menu& Item(int index) const;
    // The item of `name` among this one and all below it, or nullptr.
    Menu* Find(const std::string& name);

    std::function<void()> OnClick;

    bool UserClick();

private:

    std::string name_;
    std::string caption_;
    bool checked_ = false;
    Menu* parent_ = nullptr;
    std::vector<std::unique_ptr<Menu>> items_;
};

}  // namespace zelvo::ui
