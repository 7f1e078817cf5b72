#include "projects/membership.h"

#include <cctype>

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/shell/file_system.h"
#include "platform/shell/project_paths.h"
#include "platform/ui/ui_host.h"
#include "projects/org_deletion.h"
#include "projects/project_rows.h"
#include "projects/project_sql.h"
#include "store/library_state.h"

namespace zelvo {

namespace {

// Closes what a routine opened, however it leaves, in the order the record
// set first.
struct OpenRows {
    dao::Database db;
    dao::Recordset rs;
    ~OpenRows() {
        try {
            if (rs.IsOpen()) rs.Close();
            if (db.IsOpen()) db.Close();
        } catch (const Error&) {
        }
    }
};

// Writes the path and side of the row being edited or added; an update the
// engine refuses (a path too long for the column) is dropped whole.
void WriteRow(const OnErrorResumeNext& er, dao::Recordset& rs, const std::string& path, std::optional<bool> side) {
    bool written = er.Do([&] {
        rs.SetValue("Project", ValueConv::TextToField(path));
        if (side) rs.SetValue("InsArcPrj", Variant(*side));
        rs.Update();
    });
    if (!written) er.Do([&] { rs.CancelUpdate(); });
}

}  // namespace

std::string FillNotFoundMessage(std::string text, std::int32_t Object_ID, const std::string& rProject) {
    auto replace = [&](const std::string& what, const std::string& with) {
        for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
            text.replace(at, what.size(), with);
    };
    // The placeholders first, so that a project named " vbcrlf " stays as typed.
    const std::string marker = " vbcrlf ";
    for (size_t at = 0; at + marker.size() <= text.size();) {
        bool same = true;
        for (size_t i = 0; i < marker.size() && same; ++i)
            same = std::tolower(static_cast<unsigned char>(text[at + i])) == marker[i];
        if (same) {
            text.replace(at, marker.size(), "\n");
            at += 1;
        } else {
            ++at;
        }
    }
    replace("%1", std::to_string(Object_ID));
    replace("%2", rProject);
    return text;
}

void MoveABObject(std::int32_t Object_ID, std::int32_t ObjectType, const std::string& rProject,
                  const std::string& rProjectTo) {
    OnErrorResumeNext er("cAddressbook.MoveABObject");
    OpenRows o;
    if (!er.Do([&] { o.db = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access"); })) return;
    bool opened = er.Do([&] {
        o.rs = o.db.OpenRecordset("Select Projects.Project,Projects.[Owner ID] ,Projects.[OwnerType] from Projects "
                                  "Where Projects.[Project]=" +
                                      QuoteSqlText(rProject) + " and Projects.[Owner ID]=" +
                                      std::to_string(Object_ID) + " and Projects.[OwnerType]=" +
                                      std::to_string(ObjectType) + ";",
                                  dao::dbOpenDynaset);
    });
    if (!opened) return;
    if (o.rs.IsEOF()) {
        UniMsgBox(FillNotFoundMessage(LngText("cAddressbook.MoveABObject", "msg",
                                              "The object №%1 not found in the project vbCrLf %2"),
                                      Object_ID, rProject),
                  ui::vbCritical);
        return;
    }
    if (er.Do([&] { o.rs.Edit(); })) WriteRow(er, o.rs, rProjectTo, std::nullopt);
}

void MoveABObject2(std::int32_t Object_ID, std::int32_t ObjectType, const std::string& rProjectFrom,
                   bool InsArcPrjFrom, const std::string& rProjectTo, bool InsArcPrjTo,
                   const std::string& rProjectShown) {
    OnErrorResumeNext er("cAddressbook.MoveABObject2");
    OpenRows o;
    bool fromNoProject = rProjectFrom.find_first_not_of(' ') == std::string::npos;
    if (!fromNoProject) {
        if (!FindProjectRow(o.db, o.rs, rProjectFrom, InsArcPrjFrom, Object_ID, ObjectType)) {
            // A book that cannot be read is no place to look for the row.
            if (!o.rs.IsOpen()) return;
            UniMsgBox(FillNotFoundMessage(LngText("cAddressbook.MoveABObject2", "msg",
                                                  "The object N%1 not found in the project vbCrLf %2"),
                                          Object_ID, rProjectShown),
                      ui::vbCritical);
            return;
        }
        if (!er.Do([&] { o.rs.Edit(); })) return;
    } else {
        bool added = er.Do([&] {
            o.db = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access");
            o.rs = o.db.OpenRecordset(OwnerProjectRowsSQL(Object_ID, ObjectType), dao::dbOpenDynaset);
            o.rs.AddNew();
            o.rs.SetValue("Owner ID", Variant(std::int64_t{Object_ID}));
            o.rs.SetValue("OwnerType", Variant(std::int64_t{ObjectType}));
        });
        if (!added) return;
    }
    WriteRow(er, o.rs, rProjectTo, InsArcPrjTo);
}

bool DeleteObjfromPrj(const std::string& rProject, bool InsArcPrj, std::int32_t Object_ID,
                      std::int32_t ObjectType) {
    if (rProject.empty()) return ObjectType == oOrganization_ID ? DeleteOrg(Object_ID) : false;
    OnErrorResumeNext er("cAddressbook.DeleteObjfromPrj");
    OpenRows o;
    if (!FindProjectRow(o.db, o.rs, rProject, InsArcPrj, Object_ID, ObjectType)) return false;
    return er.Do([&] { o.rs.Delete(); });
}

void PrjArcPrjSingleProject(std::int32_t Object_ID, std::int32_t ObjectType, const std::string& rProject,
                            bool InsArcPrj) {
    OpenRows o;
    if (!FindProjectRow(o.db, o.rs, rProject, InsArcPrj, Object_ID, ObjectType)) return;
    SendRowToOtherSide(o.rs, rProject, InsArcPrj);
}

void PrjArcPrj2(std::int32_t Object_ID, std::int32_t ObjectType, bool& InsArcPrj) {
    OnErrorResumeNext er("cAddressbook.PrjArcPrj2");
    const bool from = InsArcPrj;
    InsArcPrj = !from;
    OpenRows o;
    if (!er.Do([&] { o.db = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access"); })) return;
    if (!er.Do([&] { o.rs = o.db.OpenRecordset(OwnerProjectsSQL(Object_ID, ObjectType), dao::dbOpenDynaset); }))
        return;
    const shell::ProjectPaths& paths = shell::CurrentProjectPaths();
    std::vector<std::string> farFolders;
    er.Do([&] {
        if (o.rs.IsEOF()) return;
        o.rs.MoveLast();
        while (!o.rs.IsBOF()) {
            std::string farPath = paths.OtherSide(ValueConv::ToText(o.rs("Project")), from);
            if (er.Do([&] { o.rs.Edit(); })) {
                WriteRow(er, o.rs, farPath, !from);
                farFolders.push_back(paths.FolderOf(farPath, !from));
            }
            o.rs.MovePrevious();
        }
    });
    // The rows cross first; the folders on the far side are made after.
    for (const std::string& folder : farFolders)
        er.Do([&] {
            if (!shell::FolderExists(folder)) shell::CurrentFolderMaker().CreateFolder(folder);
        });
}

}  // namespace zelvo
