#include "platform/ui/combo_box.h"

#include "platform/core/error.h"
#include "platform/ui/listview.h"

namespace zelvo::ui {

void ComboBox::Check(int index) const {
    if (index < 0 || index >= ListCount()) throw Error(kIndexOutOfBounds, "Invalid argument", "ComboBox");
}

void ComboBox::AddItem(const std::string& text, int index) {
    if (index == -1) index = ListCount();
    if (index < 0 || index > ListCount()) throw Error(kIndexOutOfBounds, "Invalid argument", "ComboBox");
    items_.insert(items_.begin() + index, Item{text, 0});
    // The chosen entry keeps being the same entry.
    if (listIndex_ >= index) ++listIndex_;
    Changed();
}

void ComboBox::RemoveItem(int index) {
    Check(index);
    items_.erase(items_.begin() + index);
    if (listIndex_ == index) listIndex_ = -1;
    else if (listIndex_ > index) --listIndex_;
    Changed();
}

void ComboBox::Clear() {
    items_.clear();
    listIndex_ = -1;
    text_.clear();
    Changed();
}

const std::string& ComboBox::List(int index) const {
    Check(index);
    return items_[index].text;
}

std::int32_t ComboBox::ItemData(int index) const {
    Check(index);
    return items_[index].data;
}

void ComboBox::SetItemData(int index, std::int32_t data) {
    Check(index);
    items_[index].data = data;
}

void ComboBox::SetListIndex(int index) {
    if (index != -1) Check(index);
    if (index == listIndex_) return;
    listIndex_ = index;
    if (index >= 0) text_ = items_[index].text;
    Changed();
    if (OnClick) OnClick();
}

void ComboBox::SetText(const std::string& text) {
    if (text == text_) return;
    text_ = text;
    Changed();
    if (OnChange) OnChange();
}

bool ComboBox::UserSelect(int index) {
    if (!Usable()) return false;
    SetListIndex(index);
    return true;
}

bool ComboBox::UserType(const std::string& text) {
    if (!Usable() || Style == vbComboDropdownList) return false;
    SetText(text);
    return true;
}

}  // namespace zelvo::ui
