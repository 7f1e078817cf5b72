#include "projects/membership_bar.h"

#include "hostservices/lng_text.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/shell/project_paths.h"
#include "platform/ui/project_picker.h"
#include "projects/project_rows.h"
#include "projects/project_state.h"
#include "store/library_state.h"

namespace zelvo {

namespace {

constexpr const char* kLabel = "Module1.tbPrj_ButtonClick";

bool HasCurrent(const dao::Recordset& rs) { return rs && rs.IsOpen() && !rs.IsEOF() && !rs.IsBOF(); }

// The 1-based position of the first selected row; 0 when none is.
int SelectedPosition(const ui::ListView& list) {
    for (int i = 1; i <= list.ListItems().Count(); ++i)
        if (list.ListItems().Item(i).Selected()) return i;
    return 0;
}

void AddToPickedProject(const dao::Database& db, dao::Recordset& rsPersonal, dao::Recordset& rsProjects,
                        ui::ListView& list, bool InsArcPrj) {
    if (!HasCurrent(rsPersonal)) return;
    ui::ProjectPicker& picker = ui::SharedProjectPicker();
    picker.SetAppPath(AppPath);
    picker.SetRootFolder(shell::CurrentProjectPaths().RootFolder(InsArcPrj));
    picker.SetTitle(LngText("Module1.tbPrj_ButtonClick", "Title", "Seleting of Component project"));
    picker.SetPath(CurrentPrjPath);
    picker.Show();
    if (picker.Cancelled()) return;
    PrjFilter = CurPrj;
    CurrentPrjPath = picker.ProjectPath();
    std::int32_t person = ValueConv::ToLong(rsPersonal("Personal ID"));
    rsProjects.AddNew();
    rsProjects.SetValue("Owner ID", Variant(std::int64_t{person}));
    rsProjects.SetValue("OwnerType", Variant(std::int64_t{0}));
    rsProjects.SetValue("Project", ValueConv::TextToField(CurrentPrjPath));
    rsProjects.Update();
    FillLvwProjects(list, person, db, rsProjects);
}

void DeleteSelected(const dao::Database& db, dao::Recordset& rsPersonal, dao::Recordset& rsProjects,
                    ui::ListView& list) {
    if (!rsProjects.IsEOF() || !rsProjects.IsBOF()) {
        rsProjects.MoveLast();
        for (int i = list.ListItems().Count(); i >= 1; --i) {
            if (list.ListItems().Item(i).Selected()) rsProjects.Delete();
            if (i > 1) rsProjects.MovePrevious();
        }
    }
    rsProjects.Requery();
    FillLvwProjects(list, ValueConv::ToLong(rsPersonal("Personal ID")), db, rsProjects);
}

void SendSelectedAcross(const dao::Database& db, dao::Recordset& rsPersonal, dao::Recordset& rsProjects,
                        ui::ListView& list, bool& InsArcPrj) {
    if (list.ListItems().Count() == 0) return;
    int position = SelectedPosition(list);
    if (position > 0) rsProjects.SetAbsolutePosition(position - 1);
    InsArcPrj = ValueConv::ToBool(rsProjects("InsArcPrj"));
    SendRowToOtherSide(rsProjects, ValueConv::ToText(rsProjects("Project")), InsArcPrj);
    FillLvwProjects(list, ValueConv::ToLong(rsPersonal("Personal ID")), db, rsProjects);
    if (position > 0 && position <= list.ListItems().Count()) {
        // Only that row: the refilled list selects nothing else.
        for (int i = 1; i <= list.ListItems().Count(); ++i) list.ListItems().Item(i).SetSelected(i == position);
    }
}

}  // namespace

void tbPrj_ButtonClick(const std::string& key, const dao::Database& db, dao::Recordset& rsPersonal,
                       dao::Recordset& rsProjects, ui::ListView& list, bool& InsArcPrj) {
    try {
        if (key == "Add") {
            AddToPickedProject(db, rsPersonal, rsProjects, list, InsArcPrj);
        } else if (key == "Del") {
            DeleteSelected(db, rsPersonal, rsProjects, list);
        } else if (key == "InsArcPrj" || key == "PrjArcPrj") {
            SendSelectedAcross(db, rsPersonal, rsProjects, list, InsArcPrj);
        }
    } catch (const Error& e) {
        if (rsProjects && rsProjects.IsOpen() && rsProjects.EditMode() != dao::dbEditNone) {
            try {
                rsProjects.CancelUpdate();
            } catch (const Error&) {
            }
        }
        ShellPaths().ReportError(e, kLabel);
        Err().Clear();
    }
}

}  // namespace zelvo
