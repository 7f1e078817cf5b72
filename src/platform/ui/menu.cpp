#include "platform/ui/menu.h"

#include "platform/core/error.h"
#include "platform/ui/listview.h"

namespace zelvo::ui {

Menu& Menu::Add(const std::string& name, const std::string& caption) {
    items_.push_back(std::make_unique<Menu>(name, caption));
    Menu& item = *items_.back();
    item.parent_ = this;
    // A sub-item's change is a change of this item too.
    item.Observe([this] { Changed(); });
    Changed();
    return item;
}

Menu& Menu::Item(int index) {
    if (index < 1 || index > Count()) throw Error(kIndexOutOfBounds, "Index out of bounds", "Menu");
    return *items_[index - 1];
}
const Menu& Menu::Item(int index) const { return const_cast<Menu*>(this)->Item(index); }

Menu* Menu::Find(const std::string& name) {
    if (name_ == name) return this;
    for (auto& item : items_)
        if (Menu* found = item->Find(name)) return found;
    return nullptr;
}

bool Menu::UserClick() {
    if (!Usable() || IsSeparator() || !items_.empty()) return false;
    if (OnClick) OnClick();
    return true;
}

}  // namespace zelvo::ui
