#include "personswindow/frm_persons.h"

#include "hostservices/lng_text.h"
#include "hostservices/shell_actions.h"
#include "personslist/lvw_add_persons.h"
#include "personslist/persons_query.h"
#include "projects/project_state.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/shell/project_paths.h"
#include "platform/ui/ui_host.h"
#include "store/library_state.h"
#include "zelvo/enums.h"

namespace zelvo {

namespace {

constexpr const char* kSpaceIdProp = "Space ID";

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
}

void frmPersons::WireEvents() {
    Toolbar1.OnButtonClick = [this](ui::Button& b) { Toolbar1_ButtonClick(b.Key()); };
    LvwUser.OnItemClick = [this](ui::ListItem& item) { LvwUser_ItemClick(item); };
    cmdOK.OnClick = [this] { cmdOK_Click(); };
    cmdCancel.OnClick = [this] { cmdCancel_Click(); };
    cmdLetter.OnClick = [this] { cmdLetter_Click(); };
    cmdGoWeb.OnClick = [this] { cmdGoWeb_Click(); };
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
    OpenDatabase();
}

void frmPersons::OpenDatabase() {
    try {
        db_ = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access");
        openError_.clear();
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
    OnErrorResumeNext scope("frmPersons.Form_QueryUnload");
    if (rsPersons_.IsOpen()) scope.Do([&] { rsPersons_.Close(); });
    if (db_.IsOpen()) scope.Do([&] { db_.Close(); });
    RemoveProp(kSpaceIdProp);
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
}

void frmPersons::SetCommandsEnabled(bool enabled) {
    for (const char* key : {"Export", "Prop", "Del", "mPack"}) Toolbar1.Buttons(key).SetEnabled(enabled);
    for (const char* key : {"Add", "Del", "PrjArcPrj"}) TbPrjProp.Buttons(key).SetEnabled(enabled);
    cmdPersProp.SetEnabled(enabled);
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
    ClearFields();
    if (rsPersons_.IsOpen())
        scope.Do([&] { LvwAddPersons2(LvwUser, rsPersons_, -1, Variant("User"), false, nullptr, nullptr, 1395, 1860); });
    LvwUser.Sort();
    host.DoEvents();

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
    if (key == "Refresh") {
        Navigate();
    } else if (key == "Exit") {
        Hide();
    } else if (key == "Help") {
        ShowHelp("frmMain.HTM");
    } else if (key == "mPack") {
        // The correspondence view gets the whole view: person, filter,
        // project and side.
        std::int32_t id = 0;
        if (ui::ListItem* item = LvwUser.SelectedItem()) id = ValueConv::ToLong(item->Tag());
        StartLauncher({std::to_string(id), "0", std::to_string(PrjFilter), txtPrj.Text(), InsArcPrj ? "1" : "0", "0"},
                      AppPath);
    }
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

void frmPersons::LvwUser_ItemClick(ui::ListItem&) {
    // The summary of the selected person on the tabs is filled here once
    // the summary is built; the selection itself is all the list needs.
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
