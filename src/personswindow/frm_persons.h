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
// Beside the list, every click on a person fills the summary tabs (name,
// home address and phones, first job and its phones, e-mail addresses and
// web pages, projects, photo) from PersonSummary, the reading that
// `zelvo person show` uses too. The commands of the window are the main
// toolbar (`Toolbar1`), the project toolbar of the third tab (`TbPrjProp`),
// the popup menu of the list (`mnPop`) and the keys; each says below what it
// refreshes.
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

#include "photos/db_photo.h"
#include "platform/dao/database.h"
#include "platform/ui/form.h"
#include "projects/project_bar.h"

namespace zelvo {

// The key codes and the shift mask the key handlers take, as the desktop's
// keyboard events give them.
enum KeyCode : int { vbKeyReturn = 13, vbKeyDelete = 46, vbKeyF1 = 112, vbKeyF8 = 119, vbKeyF11 = 122 };
constexpr int vbShiftMask = 1;
constexpr int vbRightButton = 2;

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
    // A new person: in the window's project, or, under AllPersons with no
    // project, in the one the person picks (none when the picker is
    // cancelled, which the person is told). Then the card, and when it
    // closes, Navigate.
    void AddPerson();
    // Deletes every selected person with what hangs on them (no question
    // asked), then one Navigate.
    void DeleteSelectedPersons();
    // The card of the selected person; the list and the summary stay as
    // they are when it closes.
    void OpenCard();
    // Fills lvwPrj with the person's project rows (kept open, so that a row
    // is a record position) and enables TbPrjProp for them.
    void FillLvwProjectsByID(std::int32_t id);
    // In photo view, gives each row the person's photo as its icon.
    void UpdatePhotos();

    // ---- Handlers
    void tbPrj_ButtonClick(const std::string& key);
    void Toolbar1_ButtonClick(const std::string& key);
    // The summary of the person of `item`.
    void LvwUser_ItemClick(ui::ListItem& item);
    void LvwUser_DblClick();
    void LvwUser_KeyDown(int KeyCode, int Shift);
    // A mouse button released over the list at the row `row` (0: no row
    // there). Returns True when mnPop is to be shown at that point: the
    // host shows it and raises the chosen item's click.
    bool LvwUser_MouseUp(int Button, int Shift, int row);
    void Form_KeyDown(int KeyCode, int Shift);
    void TbPrjProp_ButtonClick(const std::string& key);
    void lvwPrj_ItemClick(ui::ListItem& item);
    void lvwEmail_KeyDown(int KeyCode, int Shift);
    void mnPop_Click(const std::string& key);
    void cmdPersProp_Click();
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
    // The list's popup menu: Prop, ABPack, a separator, View with
    // ViewPhoto and ViewList.
    ui::Menu mnPop{"mnPop"};

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
    void InitPopupMenu();
    void SetViewChecks();
    // The project picker on the window's side and project; "" when cancelled.
    std::string ProjectDialog(const std::string& title);
    void AddProjectRow();
    // Runs Del or PrjArcPrj of the card's project bar on the selected person.
    void RunMembershipKey(const std::string& key);
    void UpdatePrjButtons();
    void Compress();
    void CloseDatabase();
    // The correspondence view for the selected person.
    void StartCorrespondence();
    // The window's project, side and filter to the bar, and back after a
    // key of the bar has changed them.
    void GiveBarState();
    void BarRefill();

    ProjectBar bar_;
    std::optional<std::int32_t> keepFilter_;  // the filter a change of side keeps
    dao::Database db_;
    dao::Recordset rsPersons_;
    dao::Recordset rsProjects_;
    // The photo of the summary: picPhoto takes it, ScaledPicture shows it.
    ui::PictureBox picPhoto_;
    dbPhoto photos_;
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
