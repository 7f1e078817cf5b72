// A combo box: a list of texts, each with a number (ItemData), of which one
// may be chosen, and a text. As with the control the book was written for,
// its list counts from 0 and ListIndex -1 means nothing is chosen.
//
// Choosing an entry (by code or by the person) sets Text to its text and runs
// `OnClick`; typing runs `OnChange`. An index outside the list is 35600.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/ui/observable.h"

namespace zelvo::ui {

enum ComboBoxStyle : int { vbComboDropdown = 0, vbComboSimple = 1, vbComboDropdownList = 2 };

class ComboBox : public Control {
public:
    int Style = vbComboDropdown;

    int ListCount() const { return static_cast<int>(items_.size()); }
    // Adds at the end, or before `index` (0 .. ListCount).
    void AddItem(const std::string& text, int index = -1);
    void RemoveItem(int index);
    void Clear();
    const std::string& List(int index) const;
    std::int32_t ItemData(int index) const;
    void SetItemData(int index, std::int32_t data);

    int ListIndex() const { return listIndex_; }
    // -1 chooses nothing and leaves Text as it is.
    void SetListIndex(int index);

    const std::string& Text() const { return text_; }
    void SetText(const std::string& text);

    std::function<void()> OnClick;
    std::function<void()> OnChange;

    // The person picks entry `index`. False when the box is disabled or hidden.
    bool UserSelect(int index);
    // The person types `text`. False when the box cannot take typing (a
    // drop-down list, or disabled or hidden).
    bool UserType(const std::string& text);

private:
    void Check(int index) const;
    struct Item {
        std::string text;
        std::int32_t data = 0;
    };
    std::vector<Item> items_;
    int listIndex_ = -1;
    std::string text_;
};

}  // namespace zelvo::ui
