#include "platform/ui/tab_strip.h"

#include "platform/core/error.h"
#include "platform/ui/listview.h"

namespace zelvo::ui {

namespace {

[[noreturn]] void OutOfBounds(const char* source) { throw Error(kIndexOutOfBounds, "Invalid property value", source); }

}  // namespace

void TabStrip::AddTab(const std::string& key, const std::string& caption) {
    tabs_.push_back(Page{key, caption});
    Changed();
}

TabStrip::Page& TabStrip::At(int tab) {
    if (tab < 0 || tab >= Tabs()) OutOfBounds("TabStrip");
    return tabs_[tab];
}
const TabStrip::Page& TabStrip::At(int tab) const { return const_cast<TabStrip*>(this)->At(tab); }

const std::string& TabStrip::TabKey(int tab) const { return At(tab).key; }
const std::string& TabStrip::TabCaption(int tab) const { return At(tab).caption; }
void TabStrip::SetTabCaption(int tab, const std::string& caption) { Assign(At(tab).caption, caption); }
bool TabStrip::TabEnabled(int tab) const { return At(tab).enabled; }
void TabStrip::SetTabEnabled(int tab, bool enabled) { Assign(At(tab).enabled, enabled); }
bool TabStrip::TabVisible(int tab) const { return At(tab).visible; }
void TabStrip::SetTabVisible(int tab, bool visible) { Assign(At(tab).visible, visible); }

void TabStrip::SetTab(int tab) {
    At(tab);
    if (tab == current_) return;
    int previous = current_;
    current_ = tab;
    Changed();
    if (OnClick) OnClick(previous);
}

bool TabStrip::UserSelect(int tab) {
    const Page& page = At(tab);
    if (!Usable() || !page.enabled || !page.visible) return false;
    SetTab(tab);
    return true;
}

void StatusBar::AddPanel(const std::string& text) {
    panels_.push_back(text);
    Changed();
}

const std::string& StatusBar::PanelText(int index) const {
    if (index < 1 || index > PanelCount()) OutOfBounds("StatusBar");
    return panels_[index - 1];
}

void StatusBar::SetPanelText(int index, const std::string& text) {
    if (index < 1 || index > PanelCount()) OutOfBounds("StatusBar");
    Assign(panels_[index - 1], text);
}

}  // namespace zelvo::ui
