#include "personswindow/frm_persons.h"

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "hostservices/shell_actions.h"
#include "hostservices/view_settings.h"
#include "personcard/person_records.h"
#include "personcard/show_person_card.h"
#include "personslist/lvw_add_persons.h"
#include "personslist/persons_query.h"
#include "personswindow/person_summary.h"
#include "projects/membership_bar.h"
#include "projects/project_rows.h"
#include "projects/project_state.h"
#include "resources/resource_queries.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/shell/project_paths.h"
#include "platform/ui/project_picker.h"
#include "platform/ui/ui_host.h"
#include "store/compress_db.h"
#include "store/library_state.h"
#include "zelvo/enums.h"

namespace zelvo {

namespace {

constexpr const char* kSpaceIdProp = "Space ID";
constexpr std::int32_t kViewList = 1;  // the key "View1" of the settings
constexpr std::int32_t kPhotoSize[] = {1395, 1860};  // the summary's photo box, twips

// The toolbar buttons and their pictures. The pictures are named by key; a
// host draws its own picture for each key.
struct ButtonDef {
    const char* key;
    const char* image;
    int style;
};

constexpr ButtonDef kToolbar1[] = {
    {"New", "User", ui::tbrDefault},          {"Import", "Import", ui::tbrDefault},
    {"Export", "Export", ui::tbrDefault},     {"Del", "Delete", ui::tbrDefault},
    {"Prop", "Properties", ui::tbrDefault},   {"mPack", "Pack", ui::tbrDefault},
    {"Refresh", "Refresh", ui::tbrDefault},   {"Compress", "Compress", ui::tbrDefault},
    {"Help", "Help", ui::tbrDefault},         {"Exit", "Exit", ui::tbrDefault},
};

constexpr ButtonDef kTbPrjProp[] = {
    {"Add", "Add2", ui::tbrDefault},
    {"Del", "Delete2", ui::tbrDefault},
    {"PrjArcPrj", "Archive", ui::tbrDefault},
};

void AddButtons(ui::Toolbar& tb, const ButtonDef* defs, size_t n) {
    for (size_t i = 0; i < n; ++i) tb.Add(defs[i].key, {}, defs[i].style, Variant(std::string(defs[i].image)));
}

std::shared_ptr<ui::ImageList> NamedImages(std::initializer_list<const char*> keys) {
    auto images = std::make_shared<ui::ImageList>();
    for (const char* key : keys) images->ListImages().Add(key, nullptr);
    return images;
}

}  // namespace

frmPersons::frmPersons()
    : ui::Form("frmPersons"),
      bar_(tbPrj, txtPrj, txtPrjLabel,
           ProjectBarOptions{"frmPersons.LocalizeControls", "AllPersons", "Persons unsorted",
                             "Projects\\Archive of completed projects", true},
           [this] { BarRefill(); }) {
    BuildControls();
    RegisterControls();
    WireEvents();
    Form_Load();
}

frmPersons::~frmPersons() { Unload(); }

// ---- Building the window

void frmPersons::BuildControls() {
    LvwUser.SetView(ui::lvwList);
    LvwUser.SetSortKey(0);
    LvwUser.SetSortOrder(ui::lvwAscending);
    LvwUser.SetIcons(NamedImages({"User"}));
    LvwUser.SetSmallIcons(NamedImages({"User"}));

    AddButtons(Toolbar1, kToolbar1, std::size(kToolbar1));
    // The project bar makes its own keys; the pictures are the window's.
    bar_.Build();
    tbPrj.OnButtonClick = [this](ui::Button& b) { tbPrj_ButtonClick(b.Key()); };
    for (auto [key, image] : {std::pair{"Browse", "OpenFold"}, {"CurPrj", "CloseFold"}, {"NoPrj", "NoSort"},
                              {"AllPersons", "ShowAll"}})
        tbPrj.Buttons(key).SetImage(Variant(image));
    AddButtons(TbPrjProp, kTbPrjProp, std::size(kTbPrjProp));
    Toolbar1.SetImageList(NamedImages({"User", "Import", "Export", "Delete", "Properties", "Pack", "Refresh",
                                       "Compress", "Help", "Exit"}));
    tbPrj.SetImageList(NamedImages({"OpenFold", "CloseFold", "Prj", "Archive", "NoSort", "ShowAll"}));
    TbPrjProp.SetImageList(NamedImages({"Add2", "Delete2", "Archive", "Prj"}));

    txtPrj.SetLocked(true);
    StatusBar1.SetStyle(ui::sbrSimple);
    for (int i = 0; i < 3; ++i) SSTab1.AddTab("SSTab1Tab" + std::to_string(i), {});
    for (ui::TextBox* box : {&txtName, &txtAddress, &txtHomePhone, &txtJob, &txtOrgPhone}) box->SetLocked(true);
    lvwEmail.SetView(ui::lvwReport);
    lvwWeb.SetView(ui::lvwReport);
    lvwPrj.SetView(ui::lvwReport);
    cmdOK.Default = true;
    cmdCancel.Cancel = true;
    // vCards come in and go out with the vCard commands; until then the
    // two keys are not offered at all rather than offered and dead.
    Toolbar1.Buttons("Import").SetVisible(false);
    Toolbar1.Buttons("Export").SetVisible(false);
    ScaledPicture.Width = kPhotoSize[0];
    ScaledPicture.Height = kPhotoSize[1];
    picPhoto_.Width = kPhotoSize[0];
    picPhoto_.Height = kPhotoSize[1];
    photos_.SetpicPhoto(&picPhoto_);
    photos_.SetScaledPhoto(&ScaledPicture);
}

void frmPersons::RegisterControls() {
    // In the order a host lays them out: the bars, the list, the tabs, the buttons.
    AddControl("Toolbar1", &Toolbar1);
    AddControl("tbPrj", &tbPrj);
    AddControl("txtPrjLabel", &txtPrjLabel);
    AddControl("txtPrj", &txtPrj);
    AddControl("LvwUser", &LvwUser);
    AddControl("SSTab1", &SSTab1);
    AddControl("Label1", &Label1);
    AddControl("txtName", &txtName);
    AddControl("Label2", &Label2);
    AddControl("txtAddress", &txtAddress);
    AddControl("Label5", &Label5);
    AddControl("txtHomePhone", &txtHomePhone);
    AddControl("Label3", &Label3);
    AddControl("txtJob", &txtJob);
    AddControl("Label4", &Label4);
    AddControl("Label6", &Label6);
    AddControl("txtOrgPhone", &txtOrgPhone);
    AddControl("ScaledPicture", &ScaledPicture);
    AddControl("lvwEmail", &lvwEmail);
    AddControl("cmdLetter", &cmdLetter);
    AddControl("lvwWeb", &lvwWeb);
    AddControl("cmdGoWeb", &cmdGoWeb);
    AddControl("lvwPrj", &lvwPrj);
    AddControl("TbPrjProp", &TbPrjProp);
    AddControl("cmdPersProp", &cmdPersProp);
    AddControl("cmdOK", &cmdOK);
    AddControl("cmdCancel", &cmdCancel);
    AddControl("StatusBar1", &StatusBar1);
    AddControl("mnPop", &mnPop);
}

void frmPersons::WireEvents() {
    Toolbar1.OnButtonClick = [this](ui::Button& b) { Toolbar1_ButtonClick(b.Key()); };
    LvwUser.OnItemClick = [this](ui::ListItem& item) { LvwUser_ItemClick(item); };
    cmdOK.OnClick = [this] { cmdOK_Click(); };
    cmdCancel.OnClick = [this] { cmdCancel_Click(); };
    cmdLetter.OnClick = [this] { cmdLetter_Click(); };
    cmdGoWeb.OnClick = [this] { cmdGoWeb_Click(); };
    cmdPersProp.OnClick = [this] { cmdPersProp_Click(); };
    LvwUser.OnDblClick = [this] { LvwUser_DblClick(); };
    lvwPrj.OnItemClick = [this](ui::ListItem& item) { lvwPrj_ItemClick(item); };
    lvwEmail.OnDblClick = [this] { cmdLetter_Click(); };
    TbPrjProp.OnButtonClick = [this](ui::Button& b) { TbPrjProp_ButtonClick(b.Key()); };
}

void frmPersons::InitPopupMenu() {
    ui::Menu& prop = mnPop.Add("Prop", LngText("frmPersons.InitPopupMenu", "txt1", "Properties"));
    ui::Menu& pack = mnPop.Add("ABPack", LngText("frmPersons.InitPopupMenu", "txt2", "Correspondence"));
    mnPop.Add("spPack", "-");
    ui::Menu& view = mnPop.Add("View", LngText("frmPersons.InitPopupMenu", "txt3", "View"));
    ui::Menu& photo = view.Add("ViewPhoto", LngText("frmPersons.InitPopupMenu", "txt4", "Photo"));
    ui::Menu& list = view.Add("ViewList", LngText("frmPersons.InitPopupMenu", "txt5", "List"));
    for (ui::Menu* item : {&prop, &pack, &photo, &list}) item->OnClick = [this, item] { mnPop_Click(item->Name()); };
}

void frmPersons::SetViewChecks() {
    mnPop.Find("ViewPhoto")->SetChecked(ExtractPhoto);
    mnPop.Find("ViewList")->SetChecked(!ExtractPhoto);
}

void frmPersons::LocalizeControls() {
    // Each text is written out whole, section, key and default, so that the
    // catalogue generator finds it.
    SetCaption(LngText("frmPersons.LocalizeControls", "Caption", "Address Book"));
    cmdCancel.SetCaption(LngText("frmPersons.LocalizeControls", "cmdCancel", "Cancel"));
    cmdOK.SetCaption(LngText("frmPersons.LocalizeControls", "cmdOK", "OK"));

    auto button = [](ui::Toolbar& tb, const char* key, std::string caption, std::string tip) {
        ui::Button& b = tb.Buttons(key);
        b.SetCaption(caption);
        b.SetToolTipText(tip);
    };
    button(Toolbar1, "New", LngText("frmPersons.LocalizeControls", "tb1BtNew", "New"),
           LngText("frmPersons.LocalizeControls", "tb1BtNewTT", "New Person"));
    button(Toolbar1, "Import", LngText("frmPersons.LocalizeControls", "tb1BtImport", "Import"),
           LngText("frmPersons.LocalizeControls", "tb1BtImportTT", "Import from vCard"));
    button(Toolbar1, "Export", LngText("frmPersons.LocalizeControls", "tb1BtExport", "Export"),
           LngText("frmPersons.LocalizeControls", "tb1BtExportTT", "Export to vCard"));
    button(Toolbar1, "Del", LngText("frmPersons.LocalizeControls", "tb1BtDel", "Delete"),
           LngText("frmPersons.LocalizeControls", "tb1BtDelTT", "Delete the selected Persons"));
    button(Toolbar1, "Prop", LngText("frmPersons.LocalizeControls", "tb1BtProp", "Properties"), {});
    button(Toolbar1, "mPack", LngText("frmPersons.LocalizeControls", "tb1BtmPack", "Correspondence"),
           LngText("frmPersons.LocalizeControls", "tb1BtmPackTT", "Correspondence with the user"));
    button(Toolbar1, "Refresh", LngText("frmPersons.LocalizeControls", "tb1BtRefresh", "Refresh"),
           LngText("frmPersons.LocalizeControls", "tb1BtRefreshTT", "Refresh the list"));
    button(Toolbar1, "Compress", LngText("frmPersons.LocalizeControls", "tb1BtCompress", "Compress"),
           LngText("frmPersons.LocalizeControls", "tb1BtCompressTT", "Compress the database"));
    button(Toolbar1, "Help", LngText("frmPersons.LocalizeControls", "tb1BtHelp", "Help"), {});
    button(Toolbar1, "Exit", LngText("frmPersons.LocalizeControls", "tb1BtExit", "Exit"), {});


    cmdGoWeb.SetToolTipText(LngText("frmPersons.LocalizeControls", "cmdGoWebTT", "Visit page"));
    cmdLetter.SetToolTipText(LngText("frmPersons.LocalizeControls", "cmdLetterTT", "Write a Letter"));
    cmdPersProp.SetCaption(LngText("frmPersons.LocalizeControls", "cmdPersProp", "Properties"));
    cmdPersProp.SetToolTipText(LngText("frmPersons.LocalizeControls", "cmdPersPropTT", "The properties of person"));
    SSTab1.SetTabCaption(0, LngText("frmPersons.LocalizeControls", "SSTab1Tab0", "Main"));
    SSTab1.SetTabCaption(1, LngText("frmPersons.LocalizeControls", "SSTab1Tab1", "Internet"));
    SSTab1.SetTabCaption(2, LngText("frmPersons.LocalizeControls", "SSTab1Tab2", "Projects"));
    lvwPrj.ColumnHeaders().Add(LngText("frmPersons.LocalizeControls", "lvwPrjHdr1", "Project"));

    button(TbPrjProp, "Add", LngText("frmPersons.LocalizeControls", "TbPrjPropBtAdd", "Add"),
           LngText("frmPersons.LocalizeControls", "TbPrjPropBtAddTT", "Add a project"));
    button(TbPrjProp, "Del", LngText("frmPersons.LocalizeControls", "TbPrjPropBtDel", "Del."),
           LngText("frmPersons.LocalizeControls", "TbPrjPropBtDelTT", "Delete project"));
    button(TbPrjProp, "PrjArcPrj", LngText("frmPersons.LocalizeControls", "TbPrjPropBtPrjArcPrj", "to Archive"),
           LngText("frmPersons.LocalizeControls", "TbPrjPropBtPrjArcPrjTT", "Send to Archive"));

    Label1.SetCaption(LngText("frmPersons.LocalizeControls", "Label1", "Name:"));
    Label2.SetCaption(LngText("frmPersons.LocalizeControls", "Label2", "Address:"));
    Label3.SetCaption(LngText("frmPersons.LocalizeControls", "Label3", "Job:"));
    Label4.SetCaption(LngText("frmPersons.LocalizeControls", "Label4", "Phone:"));
    Label5.SetCaption(LngText("frmPersons.LocalizeControls", "Label5", "Home:"));
    Label6.SetCaption(LngText("frmPersons.LocalizeControls", "Label6", "Work:"));
}

void frmPersons::Form_Load() {
    LocalizeControls();
    SetSpaceID(0);
    InitPopupMenu();
    ExtractPhoto = ReadViewSetting(AppPath, kViewList, ui::lvwList) == ui::lvwIcon;
    SetViewChecks();
    OpenDatabase();
}

void frmPersons::OpenDatabase() {
    try {
        db_ = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access");
        openError_.clear();
        // The summary's photos come through the window's book.
        photos_.SetPhotoBook(db_);
    } catch (const Error& e) {
        // The window still opens, with an empty list: one report, and the
        // reason stays in the status bar where the person sees it.
        openError_ = e.description();
        ShellPaths().ReportError(e, "frmPersons.Form_Load");
        StatusBar1.SetSimpleText(openError_);
    }
}

bool frmPersons::DatabaseOpen() const { return db_.IsOpen(); }

void frmPersons::QueryUnload() {
    CloseDatabase();
    RemoveProp(kSpaceIdProp);
}

void frmPersons::CloseDatabase() {
    OnErrorResumeNext scope("frmPersons.Form_QueryUnload");
    photos_.SetPhotoBook({});
    if (rsProjects_.IsOpen()) scope.Do([&] { rsProjects_.Close(); });
    if (rsPersons_.IsOpen()) scope.Do([&] { rsPersons_.Close(); });
    if (db_.IsOpen()) scope.Do([&] { db_.Close(); });
}

// ---- State

std::int32_t frmPersons::Personal_ID() const {
    for (int i = 1; i <= LvwUser.ListItems().Count(); ++i) {
        const ui::ListItem& item = LvwUser.ListItems().Item(i);
        if (item.Selected()) return ValueConv::ToLong(item.Tag());
    }
    return 0;
}

std::int32_t frmPersons::SpaceID() const { return GetProp(kSpaceIdProp).value_or(0); }

void frmPersons::SetSpaceID(std::int32_t id) {
    if (id != 0) SetProp(kSpaceIdProp, id);
    else RemoveProp(kSpaceIdProp);
    // A window of its own is a dialog with OK and Cancel; inside a space of
    // the shell it is a page that leaves by Exit.
    cmdOK.SetVisible(id == 0);
    cmdCancel.SetVisible(id == 0);
    Toolbar1.Buttons("Exit").SetVisible(id != 0);
}

// ---- Routines

void frmPersons::TakeShellCurrentFolder() {
    shell::ShellPaths& paths = ShellPaths();
    std::string folder = paths.GetCurrentFolder();
    InsArcPrj = paths.IsArchivePath(folder);
    rProject = shell::ProjectPathUnderRoot(shell::CurrentProjectPaths().RootFolder(InsArcPrj), folder);
}

void frmPersons::ClearFields() {
    for (ui::TextBox* box : {&txtName, &txtAddress, &txtJob, &txtOrgPhone, &txtHomePhone}) box->SetText({});
    for (ui::ListView* list : {&lvwEmail, &lvwWeb, &lvwPrj}) list->ListItems().Clear();
    ScaledPicture.Picture.reset();
    ScaledPicture.Image.reset();
}

void frmPersons::SetCommandsEnabled(bool enabled) {
    for (const char* key : {"Export", "Prop", "Del", "mPack"}) Toolbar1.Buttons(key).SetEnabled(enabled);
    cmdPersProp.SetEnabled(enabled);
    // With a person the item click has enabled the project keys for that
    // person's rows; without one there is nobody to file.
    if (!enabled)
        for (const char* key : {"Add", "Del", "PrjArcPrj"}) TbPrjProp.Buttons(key).SetEnabled(false);
}

void frmPersons::Navigate() {
    OnErrorResumeNext scope("frmPersons.Navigate");
    ui::UiHost& host = ui::CurrentUiHost();
    StatusBar1.SetSimpleText(LngText("frmPersons.Navigate", "SimpleText", "The enumeration of persons"));

    std::string query;
    switch (PrjFilter) {
        case AllPersons:
            txtPrj.SetText({});
            query = scope.Resume([&] { return GetAllPersonsQuery(InsArcPrj); });
            break;
        case NoPrj:
            txtPrj.SetText({});
            query = GetNoPrjPersonsQuery();
            break;
        default:
            if (rProject.empty()) TakeShellCurrentFolder();
            txtPrj.SetText(rProject);
            query = GetPrjPersonsQuery(rProject, InsArcPrj, CurPrj);
            break;
    }
    if (rsPersons_.IsOpen()) scope.Do([&] { rsPersons_.Close(); });
    if (db_.IsOpen() && !query.empty())
        rsPersons_ = scope.Resume([&] { return db_.OpenRecordset(query, dao::dbOpenDynaset); });

    LvwUser.ListItems().Clear();
    host.DoEvents();
    LvwUser.SetAllowRedraw(false);
    LvwUser.SetView(ExtractPhoto ? ui::lvwIcon : ui::lvwList);
    SetViewChecks();
    ClearFields();
    if (rsPersons_.IsOpen())
        scope.Do([&] { LvwAddPersons2(LvwUser, rsPersons_, -1, Variant("User"), false, nullptr, nullptr, 1395, 1860); });
    LvwUser.Sort();
    host.DoEvents();
    UpdatePhotos();

    bool hasRows = LvwUser.ListItems().Count() > 0;
    if (hasRows) {
        ui::ListItem& first = LvwUser.ListItems().Item(1);
        first.SetSelected(true);
        LvwUser_ItemClick(first);
    }
    LvwUser.SetAllowRedraw(true);
    // A book that never opened keeps saying so.
    StatusBar1.SetSimpleText(openError_);
    SetCommandsEnabled(hasRows);
}

void frmPersons::Restore_tbPrj() {
    GiveBarState();
    bar_.Restore_tbPrj();
    ui::Button& projects = tbPrj.Buttons("Projects");
    if (InsArcPrj) {
        projects.SetImage(Variant("Archive"));
        projects.SetToolTipText(LngText("frmPersons.Restore_tbPrj", "tbPrjBtProjectsTT1", "Go to Projects"));
    } else {
        projects.SetImage(Variant("Prj"));
        projects.SetToolTipText(
            LngText("frmPersons.Restore_tbPrj", "tbPrjBtProjectsTT2", "Go to Archive of completed projects"));
    }
}

void frmPersons::GiveBarState() {
    zelvo::PrjFilter = static_cast<AddrFiltr>(PrjFilter);
    bar_.rProject = rProject;
    bar_.InsArcPrj = InsArcPrj;
}

void frmPersons::BarRefill() {
    rProject = bar_.rProject;
    InsArcPrj = bar_.InsArcPrj;
    // The bar of the other windows shows the project after a change of
    // side; this window keeps its filter, so that all persons of the
    // archive are one click away from all persons of the live side.
    PrjFilter = keepFilter_ ? *keepFilter_ : zelvo::PrjFilter;
    Restore_tbPrj();
    ui::CurrentUiHost().DoEvents();
    Navigate();
}

// ---- Handlers

void frmPersons::tbPrj_ButtonClick(const std::string& key) {
    GiveBarState();
    if (key == "Projects") keepFilter_ = PrjFilter;
    // The bar asks for the refill (BarRefill) after every key but a Browse
    // that was cancelled, which only restores the bar.
    bar_.tbPrj_ButtonClick(key);
    keepFilter_.reset();
}

void frmPersons::Toolbar1_ButtonClick(const std::string& key) {
    try {
        if (key == "New") {
            AddPerson();
        } else if (key == "Del") {
            DeleteSelectedPersons();
        } else if (key == "Prop") {
            OpenCard();
        } else if (key == "mPack") {
            StartCorrespondence();
        } else if (key == "Refresh") {
            Navigate();
        } else if (key == "Compress") {
            Compress();
        } else if (key == "Help") {
            ShowHelp("frmMain.HTM");
        } else if (key == "Exit") {
            Hide();
        }
    } catch (const Error& e) {
        ShellPaths().ReportError(e, "frmPersons.Toolbar_ButtonClick");
        Err().Clear();
    }
}

void frmPersons::StartCorrespondence() {
    // The correspondence view gets the whole view: person, filter, project
    // and side.
    StartLauncher({std::to_string(Personal_ID()), "0", std::to_string(PrjFilter), txtPrj.Text(),
                   InsArcPrj ? "1" : "0", "0"},
                  AppPath);
}

std::string frmPersons::ProjectDialog(const std::string& title) {
    ui::ProjectPicker& picker = ui::SharedProjectPicker();
    picker.SetAppPath(AppPath);
    picker.SetRootFolder(shell::CurrentProjectPaths().RootFolder(InsArcPrj));
    picker.SetTitle(title);
    picker.SetPath(rProject);
    picker.Show();
    return picker.Cancelled() ? std::string() : picker.ProjectPath();
}

void frmPersons::AddPerson() {
    try {
        std::string project = rProject;
        if (PrjFilter == AllPersons && project.empty()) {
            project = ProjectDialog(LngText("frmPersons.AddPerson", "Title", "Choosing a component project"));
            if (project.empty())
                UniMsgBox(LngText("frmPersons.AddPerson", "msg", "The added person will be unsorted!"), 64);
        }
        std::int32_t id = NewPersonRecord(project, InsArcPrj);
        if (id == 0) return;
        ShowPersonCard(id, PrjFilter == CurPrj ? rProject : std::string(), InsArcPrj);
        Navigate();
    } catch (const Error& e) {
        ShellPaths().ReportError(e, "frmPersons.AddPerson");
        Err().Clear();
    }
}

void frmPersons::DeleteSelectedPersons() {
    if (db_.IsOpen()) {
        OnErrorResumeNext scope("frmPersons.Toolbar_ButtonClick");
        std::vector<std::int32_t> chosen;
        for (int i = 1; i <= LvwUser.ListItems().Count(); ++i) {
            const ui::ListItem& item = LvwUser.ListItems().Item(i);
            if (item.Selected()) chosen.push_back(ValueConv::ToLong(item.Tag()));
        }
        for (std::int32_t id : chosen) {
            // The person's own row only, so that a large book is not walked
            // once for every person deleted.
            dao::Recordset rs = scope.Resume([&] {
                return db_.OpenRecordset(SqlRecordByID("PersonalData", "Personal ID", id), dao::dbOpenDynaset);
            });
            if (!rs) continue;
            if (scope.Resume([&] { return !rs.IsEOF(); })) {
                DeletePersonData(id);
                scope.Do([&] { rs.Delete(); });
            }
            scope.Do([&] { rs.Close(); });
        }
    }
    Navigate();
}

void frmPersons::OpenCard() {
    const ui::ListItem* item = LvwUser.SelectedItem();
    if (!item) return;
    ShowPersonCard(ValueConv::ToLong(item->Tag()), PrjFilter == CurPrj ? rProject : std::string(), InsArcPrj);
}

void frmPersons::Compress() {
    CloseDatabase();
    CompressDB();
    ui::CurrentUiHost().DoEvents();
    OpenDatabase();
    Navigate();
}

void frmPersons::UpdatePhotos() {
    if (!ExtractPhoto || !db_.IsOpen()) return;
    StatusBar1.SetSimpleText(LngText("frmPersons.UpdatePhotos", "SimpleText", "Reading photos"));
    ui::PictureBox work, scaled;
    scaled.Width = kPhotoSize[0];
    scaled.Height = kPhotoSize[1];
    dbPhoto photos;
    photos.SetpicPhoto(&work);
    photos.SetScaledPhoto(&scaled);
    photos.SetPhotoBook(db_);
    photos.SetListIcons(LvwUser);
    StatusBar1.SetSimpleText({});
}

void frmPersons::cmdLetter_Click() {
    if (lvwEmail.ListItems().Count() == 0) return;
    ui::ListItem* item = lvwEmail.SelectedItem();
    if (!item) return;
    // The side is that of the folder the shell shows, not the window's.
    bool inArchive = ShellPaths().IsArchivePath(ShellPaths().GetCurrentFolder());
    MailAction(item->Text(), AppPath, rProject, inArchive);
}

void frmPersons::cmdGoWeb_Click() {
    if (ui::ListItem* item = lvwWeb.SelectedItem()) OpenPage(item->Text());
}

void frmPersons::LvwUser_ItemClick(ui::ListItem& item) {
    OnErrorResumeNext scope("frmPersons.LvwUser_ItemClick");
    const std::int32_t id = ValueConv::ToLong(item.Tag());
    txtName.SetText(item.Text());
    FillLvwProjectsByID(id);

    SummaryParts parts;
    parts.name = false;      // the row's text
    parts.projects = false;  // lvwPrj, from the kept record set
    parts.photos = &photos_;
    PersonSummary summary = ReadPersonSummary(db_, id, parts);
    txtHomePhone.SetText(summary.HomePhones);
    txtAddress.SetText(summary.Address);
    txtJob.SetText(summary.Job);
    txtOrgPhone.SetText(summary.OrgPhones);

    auto fill = [](ui::ListView& list, const std::vector<std::string>& texts, const char* icon) {
        list.ListItems().Clear();
        for (const std::string& text : texts)
            list.ListItems().Add(list.ListItems().Count() + 1, {}, text, Variant(icon), Variant(icon));
        return list.ListItems().Count() > 0;
    };
    const bool mails = fill(lvwEmail, summary.Emails, "Email");
    cmdLetter.SetEnabled(mails);
    Toolbar1.Buttons("mPack").SetEnabled(mails);
    mnPop.Find("ABPack")->SetEnabled(mails);
    cmdGoWeb.SetEnabled(fill(lvwWeb, summary.Webs, "IE"));
}

void frmPersons::FillLvwProjectsByID(std::int32_t id) {
    OnErrorResumeNext scope("frmPersons.FillLvwProjectsByID");
    lvwPrj.ListItems().Clear();
    if (rsProjects_.IsOpen()) scope.Do([&] { rsProjects_.Close(); });
    if (db_.IsOpen()) FillLvwProjects(lvwPrj, id, db_, rsProjects_);
    UpdatePrjButtons();
}

void frmPersons::UpdatePrjButtons() {
    const bool rows = lvwPrj.ListItems().Count() > 0;
    TbPrjProp.Buttons("Add").SetEnabled(true);
    TbPrjProp.Buttons("Del").SetEnabled(rows);
    TbPrjProp.Buttons("PrjArcPrj").SetEnabled(rows);
    if (!rows) return;
    ui::ListItem* selected = lvwPrj.SelectedItem();
    if (!selected) {
        selected = &lvwPrj.ListItems().Item(1);
        selected->SetSelected(true);
    }
    lvwPrj_ItemClick(*selected);
}

void frmPersons::lvwPrj_ItemClick(ui::ListItem& item) {
    ui::Button& b = TbPrjProp.Buttons("PrjArcPrj");
    if (item.Icon() == Variant("Archive")) {
        b.SetImage(Variant("Prj"));
        b.SetToolTipText(LngText("frmPersons.lvwPrj_ItemClick", "TbPrjPropBtPrjArcPrjTT1", "Restore from Archive"));
        b.SetCaption(LngText("frmPersons.lvwPrj_ItemClick", "TbPrjPropBtPrjArcPrj1", "from Archive"));
    } else {
        b.SetImage(Variant("Archive"));
        b.SetToolTipText(LngText("frmPersons.lvwPrj_ItemClick", "TbPrjPropBtPrjArcPrjTT2", "Send to Archive"));
        b.SetCaption(LngText("frmPersons.lvwPrj_ItemClick", "TbPrjPropBtPrjArcPrj2", "to Archive"));
    }
}

void frmPersons::TbPrjProp_ButtonClick(const std::string& key) {
    if (!LvwUser.SelectedItem()) return;
    if (key == "Add") AddProjectRow();
    else if (key == "Del" || key == "PrjArcPrj") RunMembershipKey(key);
}

void frmPersons::AddProjectRow() {
    OnErrorResumeNext scope("frmPersons.TbPrjProp_ButtonClick");
    const std::int32_t id = Personal_ID();
    std::string project = ProjectDialog({});
    if (project.empty() || !rsProjects_.IsOpen()) return;
    scope.Do([&] {
        rsProjects_.AddNew();
        rsProjects_.SetValue("Owner ID", Variant(std::int64_t{id}));
        rsProjects_.SetValue("OwnerType", Variant(std::int64_t{0}));
        rsProjects_.SetValue("Project", ValueConv::TextToField(project));
        rsProjects_.SetValue("InsArcPrj", Variant(InsArcPrj));
        rsProjects_.Update();
    });
    FillLvwProjectsByID(id);
}

void frmPersons::RunMembershipKey(const std::string& key) {
    // The card's project bar does the same on the same list: the selected
    // rows go, or the selected row goes to the other side and stays selected.
    OnErrorResumeNext scope("frmPersons.TbPrjProp_ButtonClick");
    const std::int32_t id = Personal_ID();
    if (!db_.IsOpen() || !rsProjects_.IsOpen()) return;
    dao::Recordset person = scope.Resume([&] {
        return db_.OpenRecordset(SqlRecordByID("PersonalData", "Personal ID", id), dao::dbOpenDynaset);
    });
    if (!person) return;
    bool side = InsArcPrj;
    zelvo::tbPrj_ButtonClick(key, db_, person, rsProjects_, lvwPrj, side);
    scope.Do([&] { person.Close(); });
    UpdatePrjButtons();
}

void frmPersons::cmdPersProp_Click() { OpenCard(); }

void frmPersons::LvwUser_DblClick() { OpenCard(); }

void frmPersons::LvwUser_KeyDown(int KeyCode, int Shift) {
    const bool shift = (Shift & vbShiftMask) != 0;
    if (KeyCode == vbKeyReturn && !shift) {
        if (LvwUser.ListItems().Count() > 0) OpenCard();
    } else if (shift && (KeyCode == vbKeyF8 || KeyCode == vbKeyDelete)) {
        Toolbar1_ButtonClick("Del");
    }
}

void frmPersons::lvwEmail_KeyDown(int KeyCode, int Shift) {
    if (KeyCode == vbKeyReturn && (Shift & vbShiftMask) == 0) cmdLetter_Click();
}

void frmPersons::Form_KeyDown(int KeyCode, int) {
    if (KeyCode == vbKeyF1) {
        ShowHelp("frmMain.HTM");
    } else if (KeyCode == vbKeyF11) {
        // A minimized window stays where the person put it.
        if (WindowState() == ui::vbNormal) SetWindowState(ui::vbMaximized);
        else if (WindowState() == ui::vbMaximized) SetWindowState(ui::vbNormal);
    }
}

bool frmPersons::LvwUser_MouseUp(int Button, int Shift, int row) {
    if (Button != vbRightButton || Shift != 0) return false;
    const bool onRow = row >= 1 && row <= LvwUser.ListItems().Count();
    for (const char* key : {"ABPack", "spPack", "Prop"}) mnPop.Find(key)->SetVisible(onRow);
    if (onRow) LvwUser.UserSelect({row});
    return true;
}

void frmPersons::mnPop_Click(const std::string& key) {
    try {
        int view = LvwUser.View();
        if (key == "Prop") {
            OpenCard();
        } else if (key == "ABPack") {
            StartCorrespondence();
        } else if (key == "ViewPhoto") {
            view = ui::lvwIcon;
        } else if (key == "ViewList") {
            view = ui::lvwList;
        }
        if (view == LvwUser.View()) return;
        LvwUser.SetView(view);
        ExtractPhoto = view == ui::lvwIcon;
        WriteViewSetting(AppPath, kViewList, view);
        Navigate();
    } catch (const Error& e) {
        ShellPaths().ReportError(e, "frmPersons.mnPop_Click");
        Err().Clear();
    }
}

void frmPersons::cmdOK_Click() {
    Cancel = false;
    Hide();
}

void frmPersons::cmdCancel_Click() {
    Cancel = true;
    Hide();
}

// ---- PickPerson

std::int32_t PickPerson(const std::string& rProject, bool InsArcPrj, int modality, std::int32_t SpaceID,
                        bool allPersons) {
    frmPersons form;
    form.rProject = rProject;
    form.InsArcPrj = InsArcPrj;
    form.PrjFilter = allPersons ? AllPersons : (rProject.empty() ? NoPrj : CurPrj);
    form.SetSpaceID(SpaceID);
    form.Navigate();
    form.Restore_tbPrj();
    // Modal or not, the caller waits until the window is closed.
    (void)modality;
    ui::CurrentUiHost().RunWindow(form);
    std::int32_t result = form.Cancel ? 0 : form.Personal_ID();
    form.Unload();
    return result;
}

}  // namespace zelvo
