#include "projects/project_bar.h"

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "platform/shell/file_system.h"
#include "platform/shell/project_paths.h"
#include "platform/ui/project_picker.h"
#include "platform/ui/ui_host.h"
#include "projects/project_state.h"
#include "store/library_state.h"

namespace zelvo {

ProjectBar::ProjectBar(ui::Toolbar& tbPrj, ui::TextBox& txtPrj, ui::Label& txtPrjLabel, ProjectBarOptions options,
                       std::function<void()> refill, ui::Menu* mnuPopArc)
    : tbPrj_(tbPrj), txtPrj_(txtPrj), txtPrjLabel_(txtPrjLabel), options_(std::move(options)),
      refill_(std::move(refill)), mnuPopArc_(mnuPopArc) {}

std::string ProjectBar::Text(const std::string& key, const std::string& fallback) const {
    return LngText(options_.section, key, fallback);
}

void ProjectBar::Build() {
    struct Key {
        std::string key, tipKey, tip;
        int style;
    };
    const Key keys[] = {
        {"Browse", "tbPrjBtBrowseTT", "Select a component project", ui::tbrDefault},
        {"CurPrj", "tbPrjBtCurPrjTT", "The current component project", ui::tbrCheck},
        {"Projects", "tbPrjBtProjectsTT", options_.projectsTip, ui::tbrDefault},
        {"NoPrj", "tbPrjBtNoPrjTT", options_.noPrjTip, ui::tbrCheck},
        {options_.allKey, "tbPrjBt" + options_.allKey + "TT", "all Persons", ui::tbrCheck},
    };
    for (const Key& k : keys) {
        ui::Button& b = tbPrj_.Add(k.key, {}, k.style);
        b.SetToolTipText(Text(k.tipKey, k.tip));
    }
    tbPrj_.Buttons("Projects").SetImage(Variant(InsArcPrj ? "Archive" : "Prj"));
    txtPrjLabel_.SetCaption(Text("txtPrjLabel", "Project:"));
    SetSideTip();
    Restore_tbPrj();
    tbPrj_.OnButtonClick = [this](ui::Button& b) { tbPrj_ButtonClick(b.Key()); };
}

void ProjectBar::Press(const std::string& key) {
    for (const std::string& k : {std::string("CurPrj"), std::string("NoPrj"), options_.allKey})
        tbPrj_.Buttons(k).SetValue(k == key ? ui::tbrPressed : ui::tbrUnpressed);
}

void ProjectBar::Restore_tbPrj() {
    Press(PrjFilter == NoPrj ? "NoPrj" : PrjFilter == CurPrj ? "CurPrj" : options_.allKey);
}

void ProjectBar::ShowProject(const std::string& text) {
    txtPrj_.SetText(text);
    txtPrj_.SetToolTipText(text);
}

void ProjectBar::SetSideTip() {
    if (!options_.sideTips) return;
    tbPrj_.Buttons("Projects").SetToolTipText(InsArcPrj ? Text("tbPrjBtProjectsTT1", "Go to Projects")
                                                        : Text("tbPrjBtProjectsTT2", "Go to Archive of completed projects"));
}

void ProjectBar::tbPrj_ButtonClick(const std::string& key) {
    if (key == "Browse") return Browse();
    if (key == "Projects") return ChangeSide();
    if (key == "CurPrj") {
        PrjFilter = CurPrj;
        Press("CurPrj");
        ShowProject(rProject);
    } else if (key == "NoPrj") {
        PrjFilter = NoPrj;
        Press("NoPrj");
        ShowProject("");
    } else if (key == options_.allKey) {
        PrjFilter = AllPersons;
        Press(options_.allKey);
        ShowProject("");
    } else {
        return;
    }
    if (refill_) refill_();
}

void ProjectBar::Browse() {
    ui::ProjectPicker& picker = ui::SharedProjectPicker();
    picker.SetAppPath(AppPath);
    picker.SetRootFolder(shell::CurrentProjectPaths().RootFolder(InsArcPrj));
    picker.SetTitle(Text("Title", "Choosing a component project"));
    picker.SetPath(rProject);
    picker.Show();
    if (picker.Cancelled()) {
        // A check button toggled by the click goes back to what the filter says.
        Restore_tbPrj();
        return;
    }
    PrjFilter = CurPrj;
    rProject = CurrentPrjPath = picker.ProjectPath();
    ShowProject(rProject);
    Press("CurPrj");
    if (refill_) refill_();
}

void ProjectBar::ChangeSide() {
    ui::Button& projects = tbPrj_.Buttons("Projects");
    const shell::ProjectPaths& paths = shell::CurrentProjectPaths();
    bool toArchive = projects.Image().AsText() == "Prj";
    if (toArchive) {
        if (!shell::FolderExists(ShellPaths().GetArchiveFolder())) {
            UniMsgBox(Text("msg", "Archive of is empty!"), ui::vbInformation);
            return;
        }
    } else if (!shell::FolderExists(ShellPaths().GetDataFolder())) {
        return;
    }
    rProject = paths.OtherSide(rProject, InsArcPrj);
    InsArcPrj = toArchive;
    projects.SetImage(Variant(toArchive ? "Archive" : "Prj"));
    SetSideTip();
    PrjFilter = CurPrj;
    Restore_tbPrj();
    ShowProject(rProject);
    if (mnuPopArc_) mnuPopArc_->SetCaption(Text("mnuPopArc", "Send to Archive"));
    if (refill_) refill_();
}

}  // namespace zelvo
