// A tab strip: pages shown one at a time under their captions. As with the
// tabbed dialog the book was written for, tabs count from 0 and `Tab()` is
// the page in front. Choosing another page runs `OnClick` with the page that
// was in front before. A tab outside the strip is 35600.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/ui/observable.h"

namespace zelvo::ui {

class TabStrip : public Control {
public:
    // A new page at the end; `key` names its caption's text for the
    // language lookup.
    void AddTab(const std::string& key, const std::string& caption);
    int Tabs() const { return static_cast<int>(tabs_.size()); }
    const std::string& TabKey(int tab) const;
    const std::string& TabCaption(int tab) const;
    void SetTabCaption(int tab, const std::string& caption);
    bool TabEnabled(int tab) const;
    void SetTabEnabled(int tab, bool enabled);
    bool TabVisible(int tab) const;
    void SetTabVisible(int tab, bool visible);

    int Tab() const { return current_; }
    void SetTab(int tab);

    std::function<void(int previousTab)> OnClick;

    // The person brings page `tab` to the front. False when the strip or the
    // page is disabled or hidden.
    bool UserSelect(int tab);

private:
    struct Page {
        std::string key;
        std::string caption;
        bool enabled = true;
        bool visible = true;
    };
    Page& At(int tab);
    const Page& At(int tab) const;
    std::vector<Page> tabs_;
    int current_ = 0;
};

// A status bar. In simple style it shows one text (SimpleText); otherwise
// its panels, each a text.
enum StatusBarStyle : int { sbrNormal = 0, sbrSimple = 1 };

class StatusBar : public Control {
public:
    int Style() const { return style_; }
    void SetStyle(int style) { Assign(style_, style); }
    const std::string& SimpleText() const { return simpleText_; }
    void SetSimpleText(const std::string& text) { Assign(simpleText_, text); }

    // Panels count from 1; a panel outside is 35600.
    int PanelCount() const { return static_cast<int>(panels_.size()); }
    void AddPanel(const std::string& text = {});
    const std::string& PanelText(int index) const;
    void SetPanelText(int index, const std::string& text);

private:
    int style_ = sbrNormal;
    std::string simpleText_;
    std::vector<std::string> panels_;
};

}  // namespace zelvo::ui
