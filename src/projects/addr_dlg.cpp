#include "projects/addr_dlg.h"

#include "hostservices/lng_text.h"
#include "personslist/lvw_add_persons.h"
#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/shell/project_paths.h"
#include "projects/project_rows.h"
#include "projects/project_state.h"
#include "store/library_state.h"

namespace zelvo {

namespace {
constexpr const char* kSection = "AddrDLG.tbPrj_ButtonClick";
}

AddrDLG::AddrDLG(ui::ListView& LvwUser, ui::Toolbar& tbPrj, ui::TextBox& txtPrj, ui::Label& txtPrjLabel,
                 ui::ListView* LvwProjects, ui::Menu* mnuPopArc)
    : LvwUser_(LvwUser), tbPrj_(tbPrj), txtPrj_(txtPrj), LvwProjects_(LvwProjects),
      bar_(tbPrj, txtPrj, txtPrjLabel,
           ProjectBarOptions{kSection, "AllMsg", "People unsorted", "Projects\\Archive of completed projects", false},
           [this] { BarRefill(); }, mnuPopArc) {
    bar_.Build();
    tbPrj_.OnButtonClick = [this](ui::Button& b) { tbPrj_ButtonClick(b.Key()); };
}

void AddrDLG::OpenPersons(const std::string& query) {
    OnErrorResumeNext scope("AddrDLG.OpenPersons");
    if (RsPersonal.IsOpen()) scope.Do([&] { RsPersonal.Close(); });
    RsPersonal = {};
    if (Database.IsOpen() && !query.empty())
        RsPersonal = scope.Resume([&] { return Database.OpenRecordset(query, dao::dbOpenDynaset); });
}

void AddrDLG::DbInit(bool& AllPersons) {
    OnErrorResumeNext scope("AddrDLG.DbInit");
    if (!Database.IsOpen()) return;
    DataPersonalFull = scope.Resume([&] { return Database.OpenRecordset("PersonalData", dao::dbOpenDynaset); });
    if (AllPersons) {
        OpenPersons("PersonalData");
    } else if (!rProject.empty()) {
        CurrentPrjPath = rProject;
        PrjFilter = CurPrj;
        OpenPersons(GetPrjPersonsQuery(rProject, InsArcPrj, CurPrj));
        bar_.Restore_tbPrj();
        txtPrj_.SetText(rProject);
    } else {
        // No project given: the one the shell shows, and its side.
        shell::ShellPaths& paths = ShellPaths();
        std::string folder = paths.GetCurrentFolder();
        InsArcPrj = paths.IsArchivePath(folder);
        rProject = shell::ProjectPathUnderRoot(shell::CurrentProjectPaths().RootFolder(InsArcPrj), folder);
        PrjFilter = NoPrj;
        OpenPersons(GetNoPrjPersonsQuery());
        bar_.Restore_tbPrj();
        txtPrj_.SetText({});
    }
    bar_.rProject = rProject;
    bar_.InsArcPrj = InsArcPrj;
    tbPrj_.Buttons("Projects").SetImage(Variant(InsArcPrj ? "Archive" : "Prj"));
}

void AddrDLG::ReFill() {
    OnErrorResumeNext scope("AddrDLG.ReFill");
    LvwUser_.ListItems().Clear();
    if (LvwProjects_) LvwProjects_->ListItems().Clear();
    if (RsPersonal.IsOpen()) scope.Do([&] { RsPersonal.Requery(); });
    if (DataPersonalFull.IsOpen()) scope.Do([&] { DataPersonalFull.Requery(); });
    if (RsPersonal.IsOpen())
        scope.Do([&] {
            LvwAddPersons2(LvwUser_, RsPersonal, 1, Variant("User"), ShowPhotos, picPhoto, ScaledPhoto, 1395, 1860);
        });
    // As the list control does after a fill, the top row is the selected
    // one. The list is never sorted: a row's place is its record's place.
    if (!LvwUser_.SelectedItem() && LvwUser_.ListItems().Count() > 0) LvwUser_.ListItems().Item(1).SetSelected(true);
    if (ui::ListItem* item = LvwUser_.SelectedItem()) LvwUser_ItemClick(*item);
    FillLvwProjects();
}

void AddrDLG::LvwUser_ItemClick(ui::ListItem& Item) {
    OnErrorResumeNext scope("AddrDLG.LvwUser_ItemClick");
    if (!RsPersonal.IsOpen()) return;
    // The fill went from the last record to the first: row 1 is the last.
    std::int64_t position = LvwUser_.ListItems().Count() - Item.Index();
    scope.Do([&] { RsPersonal.SetAbsolutePosition(position); });
    std::int32_t id = scope.Resume([&] { return ValueConv::ToLong(RsPersonal("Personal ID")); });
    if (DataPersonalFull.IsOpen())
        scope.Do([&] {
            DataPersonalFull.MoveFirst();
            DataPersonalFull.FindFirst("[Personal ID]=" + std::to_string(id));
        });
}

bool AddrDLG::IsInsArcPrj() const { return tbPrj_.Buttons("Projects").Image().AsText() != "Prj"; }

void AddrDLG::Restore_tbPrj() { bar_.Restore_tbPrj(); }

void AddrDLG::FillLvwProjects() {
    OnErrorResumeNext scope("AddrDLG.FillLvwProjects");
    bool current = RsPersonal.IsOpen() &&
                   scope.Resume([&] { return !RsPersonal.IsBOF() && !RsPersonal.IsEOF(); }, false);
    if (!current) {
        if (LvwProjects_) LvwProjects_->ListItems().Clear();
        return;
    }
    std::int32_t id = scope.Resume([&] { return ValueConv::ToLong(RsPersonal("Personal ID")); });
    if (LvwProjects_) scope.Do([&] { zelvo::FillLvwProjects(*LvwProjects_, id, Database, DataProjects); });
}

void AddrDLG::tbPrj_ButtonClick(const std::string& key) {
    OnErrorResumeNext scope(kSection);
    bar_.rProject = rProject;
    bar_.InsArcPrj = IsInsArcPrj();
    // The bar asks for BarRefill after every key but a cancelled Browse and
    // a side that has no folder.
    bar_.tbPrj_ButtonClick(key);
    rProject = bar_.rProject;
    InsArcPrj = bar_.InsArcPrj;
}

void AddrDLG::BarRefill() {
    OnErrorResumeNext scope(kSection);
    rProject = bar_.rProject;
    InsArcPrj = bar_.InsArcPrj;
    std::string query;
    switch (PrjFilter) {
        case AllPersons:
            query = scope.Resume([&] { return GetAllPersonsQuery(IsInsArcPrj()); });
            break;
        case NoPrj:
            query = GetNoPrjPersonsQuery();
            break;
        default:
            query = GetPrjPersonsQuery(txtPrj_.Text(), InsArcPrj, CurPrj);
            break;
    }
    OpenPersons(query);
    ReFill();
}

}  // namespace zelvo
