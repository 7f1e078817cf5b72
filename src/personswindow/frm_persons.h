// frmPersons: the address book window, the program's main window.
//
// The list of persons under a project bar, and beside it the summary of the
// selected person in three tabs. The window is a view model: its controls
// are the members below, registered under their names for the host that
// draws them and the scripted driver that clicks them; the handlers are the
// methods named after the control and event (`tbPrj_ButtonClick`, …), and
// the controls call them when a person acts.
//
// State: `PrjFilter` (AllPersons, NoPrj or CurPrj), `rProject` and
// `InsArcPrj` choose what the list shows; `Navigate` fills it. The project
// bar `tbPrj` is the one all person lists share (ProjectBar); this window
// gives it its state before a key and takes the result back, keeping its
// filter when the side changes. `Cancel`
// stays True until the person ends the window with OK. `SpaceID` not 0 means
// the window runs inside a space of the shell: it is kept as the window
// property "Space ID" and switches the dialog buttons off and `Exit` on.
//
// The window opens the book when it is made and closes it when it is
// unloaded. A book that cannot be opened (missing, locked, damaged) leaves
// the list empty: the engine's error is reported once, shown in the status
// bar, and every later step passes over the missing book.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/dao/database.h"
#include "platform/ui/form.h"
#include "projects/project_bar.h"

namespace zelvo {

class frmPersons : public ui::Form {
public:
    frmPersons();
    ~frmPersons() override;

    // ---- State
    std::int32_t PrjFilter = 1;  // AddrFiltr: 0 AllPersons, 1 NoPrj, 2 CurPrj
    std::string rProject;
    bool InsArcPrj = false;
    // True: the list shows photos (View 0); False: a list of names (View 2).
    bool ExtractPhoto = false;
    // True until the person ends the window with OK.
    bool Cancel = true;

    // The Tag of the selected row (the first when several are); 0 when no
    // row is selected.
    std::int32_t Personal_ID() const;

    std::int32_t SpaceID() const;
    void SetSpaceID(std::int32_t id);

    // Whether the book is open (false after a failed open, and once unloaded).
    bool DatabaseOpen() const;

    // ---- Routines
    // Refills LvwUser for PrjFilter, rProject and InsArcPrj, selects the
    // first row and enables the commands that need a row. With CurPrj and
    // an empty rProject the shell's current folder decides the project and
    // the side. Failing steps are passed over.
    void Navigate();
    // Presses the filter's button of tbPrj and releases the other two, and
    // shows the side on the Projects button.
    void Restore_tbPrj();

    // ---- Handlers
    void tbPrj_ButtonClick(const std::string& key);
    void Toolbar1_ButtonClick(const std::string& key);
    void LvwUser_ItemClick(ui::ListItem& item);
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdLetter_Click();
    void cmdGoWeb_Click();

    // ---- Controls
    ui::ListView LvwUser;
    ui::Toolbar Toolbar1;
    ui::Toolbar tbPrj;
    ui::Label txtPrjLabel;
    ui::TextBox txtPrj;
    ui::StatusBar StatusBar1;
    ui::TabStrip SSTab1;
    // Tab 0: the person's main data.
    ui::Label Label1, Label2, Label3, Label4, Label5, Label6;
    ui::TextBox txtName, txtAddress, txtHomePhone, txtJob, txtOrgPhone;
    ui::PictureBox ScaledPicture;
    // Tab 1: e-mail addresses and web pages.
    ui::ListView lvwEmail, lvwWeb;
    ui::CommandButton cmdLetter, cmdGoWeb;
    // Tab 2: the person's projects.
    ui::ListView lvwPrj;
    ui::Toolbar TbPrjProp;
    ui::CommandButton cmdPersProp, cmdOK, cmdCancel;

protected:
    void QueryUnload() override;

private:
    void Form_Load();
    void BuildControls();
    void RegisterControls();
    void LocalizeControls();
    void WireEvents();
    void OpenDatabase();
    void ClearFields();
    // The project and side of the shell's current folder, for CurPrj with
    // no project given.
    void TakeShellCurrentFolder();
    void SetCommandsEnabled(bool enabled);
    // The window's project, side and filter to the bar, and back after a
    // key of the bar has changed them.
    void GiveBarState();
    void BarRefill();

    ProjectBar bar_;
    std::optional<std::int32_t> keepFilter_;  // the filter a change of side keeps
    dao::Database db_;
    dao::Recordset rsPersons_;
    std::string openError_;  // the engine's text when the book would not open
};

// Opens the address book window and waits until the person closes it.
// `modality` 0 or 1 (both wait: the window must look modal to the caller);
// `allPersons` starts with AllPersons, else with NoPrj when `rProject` is
// empty and CurPrj when not. Returns the selected person's identity when the
// person ended the window with OK, else 0.
std::int32_t PickPerson(const std::string& rProject, bool InsArcPrj, int modality, std::int32_t SpaceID,
                        bool allPersons);

}  // namespace zelvo
