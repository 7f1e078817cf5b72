// frmMain: the person card, which shows and edits one person.
//
// A head with the four name boxes, the photo and the dialog buttons, and
// three tabs: 0 Business, 1 Home, 2 Projects. There is no save step: each
// name box writes its column of PersonalData at every change, and "display
// as" (Combo1) writes FullName; OK, Cancel and the frame only close the
// window. A card neither makes nor deletes a person.
//
// The window is a view model like frmPersons: its controls are the members
// below, registered under their names for the hosts and the scripted
// driver; the handlers are the methods named after control and event.
//
// Lifecycle: the caller (ShowPersonCard) sets ShowMode, Personal_ID,
// rProject, InsArcPrj, CancelCompressing and AllPersons, then Form_Load
// (the book corrected to today's layout first, then opened), ReadData, the
// wait in the host, and Unload. A person who is not there, or not in
// rProject, gives a card with empty fields and no message, and its boxes
// write nothing. A book that cannot be opened is reported once by
// Form_Load; every later step passes over it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/dao/database.h"
#include "platform/ui/form.h"

namespace zelvo {

class AddrDLG;
class dbPhoto;

class frmMain : public ui::Form {
public:
    frmMain();
    ~frmMain() override;

    // ---- State set before the load
    std::int32_t ShowMode = 0;  // 1 while the window is a card
    std::int32_t Personal_ID = 0;
    std::string rProject;
    bool InsArcPrj = false;
    bool AllPersons = true;         // rProject is empty: the person is looked for among all persons
    bool CancelCompressing = true;  // closing the card does not compress the book

    // True while the card fills its fields; the boxes then write nothing.
    bool Navigating = false;

    // The persons in which the card finds its person (the list controller's).
    dao::Recordset& RsPersonal();
    // The project rows of the person, as the Projects tab lists them.
    dao::Recordset& DataProjects();
    // Whether the book is open (false after a failed load, and once unloaded).
    bool DatabaseOpen() const;

    // ---- Routines
    void Form_Load();
    // Finds the person, fills the fields and lists, and sets the caption.
    void ReadData();
    // Puts RsPersonal on the person (through the project row when the card
    // was opened in a project), then NavigateCard.
    void SetDataPersPos();
    // Fills what hangs on the person: the Home tab's e-mail, phone, web and
    // ICQ lists and the photo, as far as the card has them.
    void NavigateCard();
    // The second pass by the card's identity: projects, e-mail list, and the
    // name boxes from the record (or emptied without one).
    void ReadCardFields();
    // The photo of the person in ScaledPicture, or the place holder.
    void RedrawScaledPhoto();
    // Rebuilds Combo1's suggestions, keeping its text.
    void FillCombo1();

    // ---- Handlers
    void txtFamily_Change();
    void txtName_Change();
    void txtMiddleName_Change();
    void Combo1_Change();
    void cmdOK_Click();
    void cmdCancel_Click();
    void Toolbar1_ButtonClick(const std::string& key);
    void LvwProjects_ItemClick(ui::ListItem& item);
    void cmdAddPhoto_Click();
    void cmdDeletePhoto_Click();
    void cmdLetter_Click();
    void cmdPack_Click();
    void cmdGoHomeWeb_Click();
    void cmdHelp_Click();

    // ---- Controls
    // Head.
    ui::Label lblFam, lblName, lblPar, lblFullName;
    ui::TextBox txtFamily, txtName, txtMiddleName;
    ui::ComboBox Combo1;
    ui::PictureBox ScaledPicture, picPhoto;
    ui::Label txtPhoto;
    ui::CommandButton cmdAddPhoto, cmdDeletePhoto, cmdPack, cmdExportToVCF, cmdHelp;
    ui::CommandButton cmdOK, cmdCancel;
    // The list controls of the list controller; a card keeps them hidden.
    ui::ListView LvwUser;
    ui::Toolbar tbPrj;
    ui::Label txtPrjLabel;
    ui::TextBox txtPrj;
    ui::CommandButton cmdDeleteRecord, cmdAddRecord, cmdAddFromVCF;
    ui::TabStrip SSTab1;
    // Tab 0, Business.
    ui::Label Label11, Label12, Label13, Label14, Label15;
    ui::ListView LvwOrg;
    ui::TextBox txtOrg, txtSubDivision, txtTitle, txtRoom;
    ui::ListView lvwEmailOrg, lvwOrgPhones, LvwOrgWeb, LvwICQorg;
    ui::CommandButton cmdOrgLetter, cmdGoOrgWeb;
    // Tab 1, Home.
    ui::Label Label1, Label4, Label6, Label8, Label9;
    ui::ListView lvwHome;
    ui::TextBox txtCountry, txtPostIndex, txtRegion, txtCity, txtAddrHome;
    ui::ListView lvwEmail, lvwHomePhones, lvwHomeWeb, LvwICQ;
    ui::CommandButton cmdLetter, cmdDelete, cmdGoHomeWeb, cmdDeleteHomeWeb, cmdDeleteICQ;
    // Tab 2, Projects.
    ui::Toolbar Toolbar1;
    ui::ListView LvwProjects;

protected:
    void QueryUnload() override;

private:
    void BuildControls();
    void RegisterControls();
    void LocalizeControls();
    void WireEvents();
    // Writes `text` to `column` of the current person, unless the card is
    // filling its fields or stands on no person.
    void WriteName(const char* column, const std::string& text);
    bool HasCurrentPerson();
    // Re-opens `rs` on `sql` through the card's book (closed, and left
    // closed, without a person).
    void Reopen(dao::Recordset& rs, std::int32_t id, const std::string& sql);
    void EnableProjectButtons();

    dao::Database CardDB;
    dao::Recordset RsOrganizations, RsJobTitles, RsAddrOwners, RsPostAddresses, RsResources, RsOwners, RsRooms;
    dao::Recordset RsEmails, RsPhones, RsWebs, RsICQ;
    std::unique_ptr<AddrDLG> addr_;
    std::unique_ptr<dbPhoto> photo_;
    // The card's identity as the tabs read it (FrameProp's Tag).
    std::string frameTag_;
    // Whether the last search found the person in RsPersonal.
    bool found_ = false;
};

}  // namespace zelvo
