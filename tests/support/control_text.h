// Controls as short texts, for expectations that read like what a person
// sees: the pressed keys of a toolbar, the rows of a list.
#pragma once

#include <string>

#include "platform/ui/listview.h"
#include "platform/ui/toolbar.h"

namespace zelvo::testing {

// The keys of the pressed buttons, in the toolbar's order, as "Key,Key".
inline std::string Pressed(const ui::Toolbar& tb) {
    std::string s;
    for (int i = 1; i <= tb.Count(); ++i)
        if (tb.Buttons(i).Value()) s += (s.empty() ? "" : ",") + tb.Buttons(i).Key();
    return s;
}

// The rows' texts in list order, joined by `separator`.
inline std::string RowTexts(const ui::ListView& lv, const char* separator = ",") {
    std::string s;
    for (int i = 1; i <= lv.ListItems().Count(); ++i) s += (i > 1 ? separator : "") + lv.ListItems().Item(i).Text();
    return s;
}

}  // namespace zelvo::testing
