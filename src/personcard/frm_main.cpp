#include "personcard/frm_main.h"

#include "hostservices/lng_text.h"
#include "hostservices/shell_actions.h"
#include "personcard/display_as.h"
#include "photos/db_photo.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "projects/addr_dlg.h"
#include "projects/membership_bar.h"
#include "resources/resource_lists.h"
#include "resources/resource_ops.h"
#include "resources/resource_queries.h"
#include "store/correct_db.h"
#include "store/library_state.h"

namespace zelvo {

namespace {

constexpr const char* kSpaceIdProp = "Space ID";

std::shared_ptr<ui::ImageList> NamedImages(std::initializer_list<const char*> keys) {
    auto images = std::make_shared<ui::ImageList>();
    for (const char* key : keys) images->ListImages().Add(key, nullptr);
    return images;
}

}  // namespace

frmMain::frmMain() : ui::Form("frmMain") {
    addr_ = std::make_unique<AddrDLG>(LvwUser, tbPrj, txtPrj, txtPrjLabel, &LvwProjects);
    photo_ = std::make_unique<dbPhoto>();
    BuildControls();
    RegisterControls();
    WireEvents();
}

frmMain::~frmMain() { Unload(); }

dao::Recordset& frmMain::RsPersonal() { return addr_->RsPersonal; }
dao::Recordset& frmMain::DataProjects() { return addr_->DataProjects; }
bool frmMain::DatabaseOpen() const { return CardDB.IsOpen(); }

// ---- Building the window

void frmMain::BuildControls() {
    for (int i = 0; i < 3; ++i) SSTab1.AddTab("SStab1Tab" + std::to_string(i), {});
    Combo1.Style = ui::vbComboDropdown;
    // The photo's box in the head, the size of a photo in the lists.
    ScaledPicture.Width = picPhoto.Width = 1395;
    ScaledPicture.Height = picPhoto.Height = 1860;
    ScaledPicture.BorderStyle = 1;

    for (auto [key, image] : {std::pair{"Add", "Add"}, {"Del", "Delete"}, {"InsArcPrj", "Archive"}})
        Toolbar1.Add(key, {}, ui::tbrDefault, Variant(image));
    Toolbar1.SetImageList(NamedImages({"Add", "Delete", "Archive", "Prj"}));
    tbPrj.SetImageList(NamedImages({"OpenFold", "CloseFold", "Prj", "Archive", "NoSort", "ShowAll"}));
    for (ui::ListView* list : {&LvwProjects, &lvwEmail, &lvwHomePhones, &lvwHomeWeb, &LvwICQ, &lvwHome, &LvwOrg,
                               &lvwEmailOrg, &lvwOrgPhones, &LvwOrgWeb, &LvwICQorg})
        list->SetView(ui::lvwReport);
    // The address and the job are shown here and changed through their
    // own dialogs.
    for (ui::TextBox* box : {&txtOrg, &txtSubDivision, &txtTitle, &txtRoom, &txtCountry, &txtPostIndex, &txtRegion,
                             &txtCity, &txtAddrHome, &txtPrj})
        box->SetLocked(true);
    cmdOK.Default = true;
    cmdCancel.Cancel = true;
}

void frmMain::RegisterControls() {
    // In the order a host lays them out: the head, the tabs, the buttons.
    AddControl("lblFam", &lblFam);
    AddControl("txtFamily", &txtFamily);
    AddControl("lblName", &lblName);
    AddControl("txtName", &txtName);
    AddControl("lblPar", &lblPar);
    AddControl("txtMiddleName", &txtMiddleName);
    AddControl("lblFullName", &lblFullName);
    AddControl("Combo1", &Combo1);
    AddControl("ScaledPicture", &ScaledPicture);
    AddControl("txtPhoto", &txtPhoto);
    AddControl("cmdAddPhoto", &cmdAddPhoto);
    AddControl("cmdDeletePhoto", &cmdDeletePhoto);
    AddControl("cmdPack", &cmdPack);
    AddControl("cmdExportToVCF", &cmdExportToVCF);
    AddControl("cmdHelp", &cmdHelp);
    AddControl("LvwUser", &LvwUser);
    AddControl("tbPrj", &tbPrj);
    AddControl("txtPrjLabel", &txtPrjLabel);
    AddControl("txtPrj", &txtPrj);
    AddControl("cmdDeleteRecord", &cmdDeleteRecord);
    AddControl("cmdAddRecord", &cmdAddRecord);
    AddControl("cmdAddFromVCF", &cmdAddFromVCF);
    AddControl("SSTab1", &SSTab1);
    AddControl("LvwOrg", &LvwOrg);
    AddControl("Label11", &Label11);
    AddControl("txtOrg", &txtOrg);
    AddControl("Label12", &Label12);
    AddControl("txtSubDivision", &txtSubDivision);
    AddControl("Label13", &Label13);
    AddControl("txtTitle", &txtTitle);
    AddControl("Label14", &Label14);
    AddControl("txtRoom", &txtRoom);
    AddControl("Label15", &Label15);
    AddControl("lvwEmailOrg", &lvwEmailOrg);
    AddControl("cmdOrgLetter", &cmdOrgLetter);
    AddControl("lvwOrgPhones", &lvwOrgPhones);
    AddControl("LvwOrgWeb", &LvwOrgWeb);
    AddControl("cmdGoOrgWeb", &cmdGoOrgWeb);
    AddControl("LvwICQorg", &LvwICQorg);
    AddControl("lvwHome", &lvwHome);
    AddControl("Label4", &Label4);
    AddControl("txtCountry", &txtCountry);
    AddControl("Label6", &Label6);
    AddControl("txtPostIndex", &txtPostIndex);
    AddControl("Label8", &Label8);
    AddControl("txtRegion", &txtRegion);
    AddControl("Label9", &Label9);
    AddControl("txtCity", &txtCity);
    AddControl("txtAddrHome", &txtAddrHome);
    AddControl("Label1", &Label1);
    AddControl("lvwEmail", &lvwEmail);
    AddControl("cmdLetter", &cmdLetter);
    AddControl("cmdDelete", &cmdDelete);
    AddControl("lvwHomePhones", &lvwHomePhones);
    AddControl("lvwHomeWeb", &lvwHomeWeb);
    AddControl("cmdGoHomeWeb", &cmdGoHomeWeb);
    AddControl("cmdDeleteHomeWeb", &cmdDeleteHomeWeb);
    AddControl("LvwICQ", &LvwICQ);
    AddControl("cmdDeleteICQ", &cmdDeleteICQ);
    AddControl("Toolbar1", &Toolbar1);
    AddControl("LvwProjects", &LvwProjects);
    AddControl("cmdOK", &cmdOK);
    AddControl("cmdCancel", &cmdCancel);
}

void frmMain::WireEvents() {
    txtFamily.OnChange = [this] { txtFamily_Change(); };
    txtName.OnChange = [this] { txtName_Change(); };
    txtMiddleName.OnChange = [this] { txtMiddleName_Change(); };
    // A pick from the list and typing both change the text; both are written.
    Combo1.OnChange = [this] { Combo1_Change(); };
    Combo1.OnClick = [this] { Combo1_Change(); };
    // The organization is a suggestion too.
    txtOrg.OnChange = [this] { FillCombo1(); };
    cmdOK.OnClick = [this] { cmdOK_Click(); };
    cmdCancel.OnClick = [this] { cmdCancel_Click(); };
    Toolbar1.OnButtonClick = [this](ui::Button& b) { Toolbar1_ButtonClick(b.Key()); };
    LvwProjects.OnItemClick = [this](ui::ListItem& item) { LvwProjects_ItemClick(item); };
    cmdAddPhoto.OnClick = [this] { cmdAddPhoto_Click(); };
    cmdDeletePhoto.OnClick = [this] { cmdDeletePhoto_Click(); };
    cmdLetter.OnClick = [this] { cmdLetter_Click(); };
    lvwEmail.OnDblClick = [this] { cmdLetter_Click(); };
    cmdPack.OnClick = [this] { cmdPack_Click(); };
    cmdGoHomeWeb.OnClick = [this] { cmdGoHomeWeb_Click(); };
    lvwHomeWeb.OnDblClick = [this] { cmdGoHomeWeb_Click(); };
    cmdHelp.OnClick = [this] { cmdHelp_Click(); };
}

void frmMain::LocalizeControls() {
    // Each text is written out whole, section, key and default, so that the
    // catalogue generator finds it.
    SetCaption(LngText("frmMain.LocalizeControls", "Caption", "Address Book"));
    cmdCancel.SetCaption(LngText("frmMain.LocalizeControls", "cmdCancel", "Cancel"));
    cmdOK.SetCaption(LngText("frmMain.LocalizeControls", "cmdOK", "OK"));
    cmdPack.SetCaption(LngText("frmMain.LocalizeControls", "cmdPack", "Correspond."));
    cmdPack.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdPackTT", "Correspondence"));
    cmdExportToVCF.SetToolTipText(
        LngText("frmMain.LocalizeControls", "cmdExportToVCFTT", "Export to file Business Card *.vcf"));
    cmdAddPhoto.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdAddPhotoTT", "Add a photo"));
    cmdDeletePhoto.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdDeletePhotoTT", "Delete the photo"));
    cmdHelp.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdHelpTT", "Help"));
    cmdDeleteHomeWeb.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdDeleteHomeWebTT", "Delete the page"));
    cmdGoHomeWeb.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdGoHomeWebTT", "Visit page"));
    cmdGoOrgWeb.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdGoOrgWebTT", "Visit page"));
    cmdDeleteICQ.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdDeleteICQTT", "Delete ICQ"));
    cmdLetter.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdLetterTT", "Write a Letter"));
    cmdOrgLetter.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdOrgLetterTT", "Write a Letter"));
    cmdDelete.SetToolTipText(LngText("frmMain.LocalizeControls", "cmdDeleteTT", "Delete the address"));
    txtPhoto.SetCaption(LngText("frmMain.LocalizeControls", "lblPhoto", "Place for photo"));
    Label11.SetCaption(LngText("frmMain.LocalizeControls", "Label11", "Organization:"));
    Label12.SetCaption(LngText("frmMain.LocalizeControls", "Label12", "Subdivision:"));
    Label13.SetCaption(LngText("frmMain.LocalizeControls", "Label13", "Job title:"));
    Label14.SetCaption(LngText("frmMain.LocalizeControls", "Label14", "Room:"));
    Label15.SetCaption(LngText("frmMain.LocalizeControls", "Label15", "E-mail:"));
    Label4.SetCaption(LngText("frmMain.LocalizeControls", "Label4", "Country:"));
    Label6.SetCaption(LngText("frmMain.LocalizeControls", "Label6", "Index:"));
    Label8.SetCaption(LngText("frmMain.LocalizeControls", "Label8", "Region:"));
    Label9.SetCaption(LngText("frmMain.LocalizeControls", "Label9", "City:"));
    Label1.SetCaption(LngText("frmMain.LocalizeControls", "Label1", "Means of communication:"));
    lblFam.SetCaption(LngText("frmMain.LocalizeControls", "lblFam", "Last name:"));
    lblName.SetCaption(LngText("frmMain.LocalizeControls", "lblName", "Name:"));
    lblPar.SetCaption(LngText("frmMain.LocalizeControls", "lblPar", "patronymic:"));
    lblFullName.SetCaption(LngText("frmMain.LocalizeControls", "lblFullName", "display as:"));
    SSTab1.SetTabCaption(0, LngText("frmMain.LocalizeControls", "SStab1Tab0", "Business"));
    SSTab1.SetTabCaption(1, LngText("frmMain.LocalizeControls", "SStab1Tab1", "Home"));
    SSTab1.SetTabCaption(2, LngText("frmMain.LocalizeControls", "SStab1Tab2", "Projects"));
    lvwHome.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "lvwHomeHdr1", "Address"));
    lvwEmail.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "lvwEmailHdr1", "E-mail"));
    lvwHomePhones.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "lvwHomePhonesHdr1", "Phone"));
    lvwHomePhones.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "lvwHomePhonesHdr2", "Phone type"));
    lvwHomeWeb.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "lvwHomeWebHdr1", "Address"));
    lvwHomeWeb.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "lvwHomeWebHdr2", "Phone type"));
    LvwICQ.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "LvwICQHdr1", "ICQ"));
    LvwICQ.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "LvwICQHdr2", "Phone type"));
    LvwOrg.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "LvwOrgHdr1", "Organization"));
    LvwOrg.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "LvwOrgHdr2", "Job title"));
    LvwOrgWeb.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "LvwOrgWebHdr1", "Address"));
    LvwOrgWeb.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "LvwOrgWebHdr2", "Phone type"));
    LvwICQorg.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "LvwICQorgHdr1", "Address"));
    LvwICQorg.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "LvwICQorgHdr2", "Phone type"));
    LvwProjects.ColumnHeaders().Add(LngText("frmMain.LocalizeControls", "LvwProjectsHdr1", "Project"));

    auto button = [this](const char* key, std::string caption, std::string tip) {
        ui::Button& b = Toolbar1.Buttons(key);
        b.SetCaption(caption);
        b.SetToolTipText(tip);
    };
    button("Add", LngText("frmMain.LocalizeControls", "tb1BtAdd", "Add"),
           LngText("frmMain.LocalizeControls", "tb1BtAddTT", "Add a project"));
    button("Del", LngText("frmMain.LocalizeControls", "tb1BtDel", "Delete"),
           LngText("frmMain.LocalizeControls", "tb1BtDelTT", "Delete project"));
    button("InsArcPrj", LngText("frmMain.LocalizeControls", "tb1BtInsArcPrj", "to Archive"),
           LngText("frmMain.LocalizeControls", "tb1BtInsArcPrjTT", "Send to Archive"));
}

// ---- Load, read, close

void frmMain::Form_Load() {
    LocalizeControls();
    try {
        // Every opening of a card brings the book to today's layout first,
        // so a file of an earlier installation is converted here.
        std::string path = DatabasePath();
        CorrectDB(path);
        CardDB = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access");
        RsOrganizations = CardDB.OpenRecordset("Organizations", dao::dbOpenDynaset);
        RsJobTitles = CardDB.OpenRecordset("JobTitles", dao::dbOpenDynaset);
        RsAddrOwners = CardDB.OpenRecordset("AddressesOwners", dao::dbOpenDynaset);
        RsPostAddresses = CardDB.OpenRecordset("PostAddresses", dao::dbOpenDynaset);
        RsResources = CardDB.OpenRecordset("Resources", dao::dbOpenDynaset);
        RsOwners = CardDB.OpenRecordset("ResourcesOwners", dao::dbOpenDynaset);
        RsRooms = CardDB.OpenRecordset("Rooms", dao::dbOpenDynaset);

        addr_->Database = CardDB;
        addr_->rProject = rProject;
        addr_->InsArcPrj = InsArcPrj;
        addr_->DbInit(AllPersons);

        photo_->SetpicPhoto(&picPhoto);
        photo_->SetScaledPhoto(&ScaledPicture);
        photo_->SetPhotoBook(CardDB);
    } catch (const Error& e) {
        ShellPaths().ReportError(e, "frmMain.Form_Load");
    }
}

bool frmMain::HasCurrentPerson() {
    dao::Recordset& rs = RsPersonal();
    if (!found_ || !rs.IsOpen()) return false;
    OnErrorResumeNext scope("frmMain.HasCurrentPerson");
    return scope.Resume([&] { return !rs.IsBOF() && !rs.IsEOF(); }, false);
}

void frmMain::ReadData() {
    OnErrorResumeNext scope("frmMain.ReadData");
    SetDataPersPos();
    ReadCardFields();
    std::string fullName;
    if (HasCurrentPerson()) fullName = scope.Resume([&] { return ValueConv::ToText(RsPersonal()("FullName")); });
    std::string caption = LngText("frmMain.ReadData", "Caption1", "%1 - the reference data");
    if (size_t at = caption.find("%1"); at != std::string::npos) caption.replace(at, 2, fullName);
    SetCaption(caption);
    frameTag_ = std::to_string(Personal_ID);
    EnableProjectButtons();
    // A card shows one person: the list controls of the controller stay
    // out of sight, and help and the export take their places.
    for (ui::Control* c : std::initializer_list<ui::Control*>{&cmdDeleteRecord, &cmdAddRecord, &cmdAddFromVCF,
                                                               &txtPrj, &txtPrjLabel, &tbPrj})
        c->SetVisible(false);
    LvwUser.SetVisible(false);
    cmdHelp.SetVisible(true);
    // The export to a vCard file comes with the vCard writer of the card;
    // until then the button is not offered.
    cmdExportToVCF.SetVisible(false);
}

void frmMain::SetDataPersPos() {
    OnErrorResumeNext scope("frmMain.SetDataPersPos");
    dao::Recordset& rs = RsPersonal();
    if (rs.IsOpen()) {
        scope.Do([&] { rs.MoveFirst(); });
        // The join with Projects has an [Owner ID]; the table has not.
        bool join = scope.Do([&] { (void)rs.Fields().Item("Owner ID"); });
        std::string id = std::to_string(Personal_ID);
        if (!AllPersons && join)
            found_ = scope.Do([&] { rs.FindFirst("[Projects].[Owner ID]=" + id + " and [Projects].[OwnerType]=0"); });
        else
            found_ = scope.Do([&] { rs.FindFirst("[Personal ID]=" + id); });
        // A search that finds nothing leaves the set where it was: the card
        // then has no person.
        found_ = found_ && !scope.Resume([&] { return rs.NoMatch(); }, true);
    } else {
        found_ = false;
    }
    NavigateCard();
}

void frmMain::NavigateCard() {
    if (Navigating) {
        RedrawScaledPhoto();
        return;
    }
    OnErrorResumeNext scope("frmMain.NavigateCard");
    Navigating = true;
    std::int32_t id = 0;
    if (HasCurrentPerson()) {
        id = scope.Resume([&] { return ValueConv::ToLong(RsPersonal()("Personal ID")); });
        cmdPack.SetEnabled(OwnerHasResource(id, 0, 2));
    } else {
        cmdPack.SetEnabled(false);
    }
    frameTag_ = std::to_string(id);
    Reopen(RsEmails, id, id ? SqlEmails(id, 0) : std::string());
    // The web pages and the ICQ numbers of the person; the phones are the
    // person's own while no home address is chosen.
    Reopen(RsWebs, id, id ? SqlPersonWebs(id) : std::string());
    lvwHomeWeb.ListItems().Clear();
    if (RsWebs.IsOpen()) NavigateWebList(RsWebs, lvwHomeWeb);
    Reopen(RsICQ, id, id ? scope.Resume([&] { return GetOwnerResourcesQuery(id, 0, 4); }) : std::string());
    LvwICQ.ListItems().Clear();
    if (RsICQ.IsOpen()) FillLvwResources(RsICQ, LvwICQ, 4);
    Reopen(RsPhones, id, id ? SqlHomePhones(id, 0) : std::string());
    lvwHomePhones.ListItems().Clear();
    if (RsPhones.IsOpen()) FilllvwPhones(RsPhones, lvwHomePhones);
    RedrawScaledPhoto();
    lvwEmail.ListItems().Clear();
    if (RsEmails.IsOpen()) scope.Do([&] { FillLvwEmails(RsEmails, lvwEmail); });
    bool mails = lvwEmail.ListItems().Count() > 0;
    // Removing an address, a page or a number belongs to the Home tab's own
    // commands, which the card does not have yet: those buttons stay out of
    // sight until then.
    for (ui::CommandButton* b : {&cmdDelete, &cmdDeleteHomeWeb, &cmdDeleteICQ}) b->SetVisible(false);
    // The buttons of a list are there only when the list has rows.
    cmdLetter.SetVisible(mails);
    cmdGoHomeWeb.SetVisible(lvwHomeWeb.ListItems().Count() > 0);
    cmdOrgLetter.SetVisible(lvwEmailOrg.ListItems().Count() > 0);
    cmdGoOrgWeb.SetVisible(LvwOrgWeb.ListItems().Count() > 0);
    Navigating = false;
}

void frmMain::Reopen(dao::Recordset& rs, std::int32_t id, const std::string& sql) {
    OnErrorResumeNext scope("frmMain.NavigateCard");
    if (rs.IsOpen()) scope.Do([&] { rs.Close(); });
    rs = {};
    if (id != 0 && !sql.empty() && CardDB.IsOpen())
        rs = scope.Resume([&] { return CardDB.OpenRecordset(sql, dao::dbOpenDynaset); });
}

void frmMain::ReadCardFields() {
    OnErrorResumeNext scope("frmMain.ReadCardFields");
    dao::Recordset& rs = RsPersonal();
    if (rs.IsOpen()) {
        // The card's own person, whatever the list stood on.
        std::string id = std::to_string(Personal_ID);
        found_ = scope.Do([&] {
            rs.MoveFirst();
            rs.FindFirst("[Personal ID]=" + id);
        });
        found_ = found_ && !scope.Resume([&] { return rs.NoMatch(); }, true);
    } else {
        found_ = false;
    }
    // The controller lists the projects of the record its set stands on; a
    // search that found nothing left it on somebody else.
    if (found_) addr_->FillLvwProjects();
    else LvwProjects.ListItems().Clear();
    Navigating = true;
    bool current = HasCurrentPerson();
    auto text = [&](const char* column) {
        return current ? scope.Resume([&] { return ValueConv::ToText(rs(column)); }) : std::string();
    };
    txtFamily.SetText(text("FirstName"));
    txtName.SetText(text("MiddleName"));
    txtMiddleName.SetText(text("Surname"));
    Combo1.SetText(text("FullName"));
    FillCombo1();
    Navigating = false;
}

void frmMain::RedrawScaledPhoto() {
    OnErrorResumeNext scope("frmMain.RedrawScaledPhoto");
    bool found = false;
    std::int32_t id = HasCurrentPerson() ? ValueConv::ToLong(frameTag_) : 0;
    // The photo rows of the person, newest first, read and written through
    // the card's own book: a row added through another connection would not
    // be seen by the card's open record sets.
    dao::Recordset rows;
    if (id != 0 && CardDB.IsOpen()) {
        std::string sql = "SELECT Photo.[Personal ID],Photo.Photo From Photo WHERE (((Photo.[Personal ID])=" +
                          std::to_string(id) + ")) order by Photo.[Photo ID] desc;";
        rows = scope.Resume([&] { return CardDB.OpenRecordset(sql, dao::dbOpenDynaset); });
    }
    photo_->SetRecordset(rows);
    if (id != 0) photo_->LoadPersonPhoto(id, found);
    else ScaledPicture.Image.reset();
    txtPhoto.SetVisible(!found);
    cmdDeletePhoto.SetVisible(found);
}

void frmMain::EnableProjectButtons() {
    bool rows = LvwProjects.ListItems().Count() > 0;
    Toolbar1.Buttons("Del").SetEnabled(rows);
    Toolbar1.Buttons("InsArcPrj").SetEnabled(rows);
    if (rows) {
        if (ui::ListItem* item = LvwProjects.SelectedItem()) LvwProjects_ItemClick(*item);
        else LvwProjects_ItemClick(LvwProjects.ListItems().Item(1));
    }
}

void frmMain::QueryUnload() {
    OnErrorResumeNext scope("frmMain.Form_QueryUnload");
    photo_.reset();
    RemoveProp(kSpaceIdProp);
    for (dao::Recordset* rs : {&RsEmails, &RsPhones, &RsWebs, &RsICQ, &RsOrganizations, &RsJobTitles, &RsAddrOwners, &RsPostAddresses,
                               &RsResources, &RsOwners, &RsRooms, &addr_->RsPersonal, &addr_->DataPersonalFull,
                               &addr_->DataProjects})
        if (rs->IsOpen()) scope.Do([&] { rs->Close(); });
    addr_->Database = {};
    if (CardDB.IsOpen()) scope.Do([&] { CardDB.Close(); });
    if (ShowMode != 0) {
        SetCaption(LngText("frmMain.Form_QueryUnload", "Caption", "Address book"));
        ShowMode = 0;
        CancelCompressing = false;
    }
}

// ---- The name

void frmMain::WriteName(const char* column, const std::string& text) {
    if (Navigating || !HasCurrentPerson()) return;
    OnErrorResumeNext scope("frmMain.WriteName");
    dao::Recordset* rs = &RsPersonal();
    // The members of a project come through a join the engine will not
    // write; the person's own row is then written through the whole table,
    // which the list controller keeps for that.
    if (!scope.Resume([&] { return rs->Updatable(); }, false)) {
        std::int32_t id = scope.Resume([&] { return ValueConv::ToLong((*rs)("Personal ID")); });
        rs = &addr_->DataPersonalFull;
        if (!rs->IsOpen()) return;
        bool there = scope.Resume(
            [&] { return !rs->IsBOF() && !rs->IsEOF() && ValueConv::ToLong((*rs)("Personal ID")) == id; }, false);
        if (!there && !scope.Do([&] {
                rs->MoveFirst();
                rs->FindFirst("[Personal ID]=" + std::to_string(id));
            }))
            return;
        if (scope.Resume([&] { return rs->NoMatch(); }, true)) return;
    }
    // As typed: no trimming, and no other column changes.
    if (!scope.Do([&] {
            rs->Edit();
            rs->SetValue(column, Variant(text));
            rs->Update();
        }))
        scope.Do([&] { rs->CancelUpdate(); });
}

void frmMain::txtFamily_Change() {
    WriteName("FirstName", txtFamily.Text());
    FillCombo1();
}

void frmMain::txtName_Change() {
    WriteName("MiddleName", txtName.Text());
    FillCombo1();
}

void frmMain::txtMiddleName_Change() {
    WriteName("Surname", txtMiddleName.Text());
    FillCombo1();
}

void frmMain::Combo1_Change() {
    WriteName("FullName", Combo1.Text());
    FillCombo1();
}

void frmMain::FillCombo1() {
    // The suggestions follow the name parts, so the list a person opens is
    // always built from what the boxes hold now; the box's text stays.
    std::vector<std::string> items =
        FillDisplayAs(txtFamily.Text(), txtName.Text(), txtMiddleName.Text(), Combo1.Text(), txtOrg.Text());
    for (int i = Combo1.ListCount() - 1; i >= 0; --i) Combo1.RemoveItem(i);
    for (const std::string& item : items) Combo1.AddItem(item);
}

// ---- Commands

void frmMain::cmdAddPhoto_Click() {
    if (!HasCurrentPerson()) return;
    if (photo_->AddPhoto(ValueConv::ToLong(frameTag_))) {
        NavigateCard();
        ReadCardFields();
    }
}

void frmMain::cmdDeletePhoto_Click() {
    // The photo shown is the newest: the first of the person's photo rows.
    if (HasCurrentPerson() && photo_->DeletePhoto()) {
        NavigateCard();
        ReadCardFields();
    }
}

void frmMain::cmdLetter_Click() {
    ui::ListItem* item = lvwEmail.SelectedItem();
    if (!item && lvwEmail.ListItems().Count() > 0) item = &lvwEmail.ListItems().Item(1);
    if (item) MailAction(item->Text(), AppPath, rProject, InsArcPrj);
}

void frmMain::cmdGoHomeWeb_Click() {
    if (ui::ListItem* item = lvwHomeWeb.SelectedItem()) OpenPage(item->Text());
    else if (lvwHomeWeb.ListItems().Count() > 0) OpenPage(lvwHomeWeb.ListItems().Item(1).Text());
}

void frmMain::cmdPack_Click() {
    // The person's correspondence: the person, owner type 0, and True.
    StartLauncher({std::to_string(Personal_ID), "0", "-1"}, AppPath);
}

void frmMain::cmdHelp_Click() { ShowHelp("frmMain.HTM"); }

void frmMain::cmdOK_Click() { Hide(); }
void frmMain::cmdCancel_Click() { Hide(); }

void frmMain::Toolbar1_ButtonClick(const std::string& key) {
    OnErrorResumeNext scope("frmMain.Toolbar1_ButtonClick");
    bool side = addr_->IsInsArcPrj();
    if (CardDB.IsOpen())
        zelvo::tbPrj_ButtonClick(key, CardDB, RsPersonal(), DataProjects(), LvwProjects, side);
    EnableProjectButtons();
}

void frmMain::LvwProjects_ItemClick(ui::ListItem& item) {
    OnErrorResumeNext scope("frmMain.LvwProjects_ItemClick");
    dao::Recordset& rs = DataProjects();
    if (!rs.IsOpen()) return;
    scope.Do([&] {
        if (item.Index() > rs.RecordCount()) rs.MoveLast();
        rs.SetAbsolutePosition(item.Index() - 1);
    });
    InsArcPrj = scope.Resume([&] { return ValueConv::ToBool(rs("InsArcPrj")); }, InsArcPrj);
    // The side key offers the way across from the row's side.
    ui::Button& b = Toolbar1.Buttons("InsArcPrj");
    const char* image = InsArcPrj ? "Prj" : "Archive";
    if (b.Image().AsText() == image) return;
    b.SetImage(Variant(image));
    if (InsArcPrj) {
        b.SetToolTipText(LngText("frmMain.LvwProjects_ItemClick", "tb1btInsArcPrjTT1", "Restore from Archive"));
        b.SetCaption(LngText("frmMain.LvwProjects_ItemClick", "tb1btInsArcPrj1", "from Archive"));
    } else {
        b.SetToolTipText(LngText("frmMain.LvwProjects_ItemClick", "tb1btInsArcPrjTT2", "Send to Archive"));
        b.SetCaption(LngText("frmMain.LvwProjects_ItemClick", "tb1btInsArcPrj2", "to Archive"));
    }
}

}  // namespace zelvo
