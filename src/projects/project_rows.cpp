#include "projects/project_rows.h"

#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/shell/file_system.h"
#include "platform/shell/project_paths.h"
#include "projects/project_sql.h"
#include "store/library_state.h"

namespace zelvo {

bool FindProjectRow(dao::Database& db, dao::Recordset& rs, const std::string& Project, bool InsArcPrj,
                    std::int32_t Object_ID, std::int32_t ObjectType) {
    OnErrorResumeNext er("FindProjectRow");
    if (!er.Do([&] { db = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access"); })) return false;
    if (!er.Do([&] { rs = db.OpenRecordset(OwnerProjectRowsSQL(Object_ID, ObjectType), dao::dbOpenDynaset); }))
        return false;
    return er.Resume([&] {
        if (rs.IsEOF()) return false;
        rs.MoveFirst();
        rs.FindFirst("[Project]=" + QuoteSqlText(Project) + " AND [InsArcPrj]=" + ValueConv::BoolToSql(InsArcPrj));
        return !rs.NoMatch();
    });
}

void SendRowToOtherSide(dao::Recordset& rs, const std::string& Project, bool& InsArcPrj) {
    OnErrorResumeNext er("SendRowToOtherSide");
    const shell::ProjectPaths& paths = shell::CurrentProjectPaths();
    std::string farPath = paths.OtherSide(Project, InsArcPrj);
    InsArcPrj = !InsArcPrj;
    bool written = er.Do([&] {
        rs.Edit();
        rs.SetValue("Project", ValueConv::TextToField(farPath));
        rs.SetValue("InsArcPrj", Variant(InsArcPrj));
        rs.Update();
    });
    if (!written) {
        // The row stays where it was, and so does the caller's flag.
        er.Do([&] { rs.CancelUpdate(); });
        InsArcPrj = !InsArcPrj;
        return;
    }
    er.Do([&] { rs.Requery(); });
    er.Do([&] {
        std::string folder = paths.FolderOf(farPath, InsArcPrj);
        if (!shell::FolderExists(folder)) shell::CurrentFolderMaker().CreateFolder(folder);
    });
}

bool ProjectRowExists(std::int32_t Owner_ID, std::int32_t OwnerType, const std::string& Project, bool InsArcPrj,
                      dao::Recordset& rs) {
    if (Project.find_first_not_of(' ') == std::string::npos) return false;
    OnErrorResumeNext er("ProjectRowExists");
    return er.Resume([&] {
        if (rs.IsEOF() && rs.IsBOF()) return false;
        rs.MoveFirst();
        rs.FindFirst(" [Owner ID]=" + std::to_string(Owner_ID) + " and OwnerType=" + std::to_string(OwnerType) +
                     " and Project=" + QuoteSqlText(Project) + " and InsArcPrj=" + ValueConv::BoolToSql(InsArcPrj));
        return !rs.NoMatch();
    });
}

void FillLvwProjects(ui::ListView& list, std::int32_t OwnerID, const dao::Database& db, dao::Recordset& rs) {
    OnErrorResumeNext er("FillLvwProjects");
    list.ListItems().Clear();
    if (!er.Do([&] { rs = db.OpenRecordset(PersonProjectsSQL(OwnerID), dao::dbOpenDynaset); })) return;
    er.Do([&] {
        if (rs.IsEOF()) return;
        // From the last row to the first, each put in front: the list ends
        // in the record set's order.
        rs.MoveLast();
        while (!rs.IsBOF()) {
            const char* icon = ValueConv::ToBool(rs("InsArcPrj")) ? "Archive" : "Prj";
            list.ListItems().Add(1, {}, ValueConv::ToText(rs("Project")), Variant(icon), Variant(icon));
            rs.MovePrevious();
        }
    });
}

}  // namespace zelvo
