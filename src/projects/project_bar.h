// The project bar (tbPrj) that every window with a list of persons holds:
// which persons the list shows (the current project, the unsorted, all),
// which project is current, and which side, live or archive, the window is
// on. This is its control logic over the window's own controls; the window
// builds it, forwards its toolbar clicks, and refills its list when asked.
//
// Keys: Browse (pick a project), CurPrj (the window's project), Projects
// (change side), NoPrj (the unsorted) and the all-key (AllMsg, AllPersons in
// the address book window). The three filter keys are exclusive; the
// choice is kept in the shared PrjFilter and CurrentPrjPath, so that the
// next window opens where the person left off.
#pragma once

#include <functional>
#include <string>

#include "platform/ui/menu.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/toolbar.h"

namespace zelvo {

struct ProjectBarOptions {
    std::string section;             // the window's section of the language texts
    std::string allKey = "AllMsg";   // "AllPersons" in the address book window
    std::string noPrjTip = "Persons unsorted";                     // "People unsorted" on the person card
    std::string projectsTip = "Projects\\Archive of completed projects";
    bool sideTips = false;           // the Projects tip names the other side (address book window)
};

class ProjectBar {
public:
    // The controls are the window's and outlive the bar. `refill` fills the
    // window's list for rProject, InsArcPrj and PrjFilter. `mnuPopArc`, when
    // the window has one, is its popup entry for sending to the archive.
    ProjectBar(ui::Toolbar& tbPrj, ui::TextBox& txtPrj, ui::Label& txtPrjLabel, ProjectBarOptions options,
               std::function<void()> refill, ui::Menu* mnuPopArc = nullptr);

    // Adds the five buttons with their tips, the label's caption and the
    // side's image, presses the key of PrjFilter, and routes the toolbar's
    // clicks here.
    void Build();

    // The window's project and side.
    std::string rProject;
    bool InsArcPrj = false;

    // One key of the bar, as a click on it.
    void tbPrj_ButtonClick(const std::string& key);

    // Presses the filter key of PrjFilter and releases the other two.
    void Restore_tbPrj();

    // The texts through the window's section.
    std::string Text(const std::string& key, const std::string& fallback) const;

private:
    void Browse();
    void ChangeSide();
    void Press(const std::string& key);
    void ShowProject(const std::string& text);
    void SetSideTip();

    ui::Toolbar& tbPrj_;
    ui::TextBox& txtPrj_;
    ui::Label& txtPrjLabel_;
    ProjectBarOptions options_;
    std::function<void()> refill_;
    ui::Menu* mnuPopArc_;
};

}  // namespace zelvo
