#include "organizations/org_model.h"

#include <unordered_set>

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "organizations/org_codes.h"
#include "store/own_database.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "zelvo/enums.h"

namespace zelvo {

namespace {

std::string Trimmed(const std::string& text) {
    std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool Blank(const std::string& text) { return Trimmed(text).empty(); }

std::string WithUnit(const std::string& text, const std::string& UnitName) {
    std::size_t at = text.find("%1");
    if (at == std::string::npos) return text;
    return text.substr(0, at) + UnitName + text.substr(at + 2);
}

// Adds one row through `rs`, filled by `fill`; the row's Counter `idField`
// is read while it is being added. When any step fails the row is dropped
// whole, so a refused value never leaves a row with the other fields.
template <class Fill>
std::int32_t AddRow(dao::Recordset& rs, const char* idField, const OnErrorResumeNext& on, Fill&& fill) {
    std::int32_t id = 0;
    bool written = on.Do([&] {
        rs.AddNew();
        fill();
        id = ValueConv::ToLong(rs(idField));
        rs.Update();
    });
    if (!written) {
        on.Do([&] { rs.CancelUpdate(); });
        return 0;
    }
    return id;
}

}  // namespace

std::string NewOrg(dao::Recordset& rsOrganizations, std::int32_t ObjType, std::int32_t& Parent_ID, std::string& Icon,
                   std::int32_t& Organization_ID, dao::Recordset* rsProjects, const std::string& rProject,
                   bool InsArcPrj) {
    const char* section = "Module1.NewOrg";
    std::string answer;
    if (ObjType == SubDiv) {
        answer = UniInputBox(LngText(section, "pmt2", "Enter the name of subdivision"),
                             LngText(section, "tl2", "Creating a new subdivision"), kNoNameAnswer);
        Icon = kIconSubDiv;
    } else if (ObjType == Org) {
        answer = UniInputBox(LngText(section, "pmt1", "Enter the name of organization"),
                             LngText(section, "tl1", "Creating a new organization"), kNoNameAnswer);
        Icon = kIconOrg;
        Parent_ID = 0;
    } else {
        return {};
    }
    if (Blank(answer)) return {};

    OnErrorResumeNext on(section);
    std::int32_t id = AddRow(rsOrganizations, "Organization ID", on, [&] {
        if (answer != kNoNameAnswer) rsOrganizations.SetValue("Organization", Variant(answer));
        rsOrganizations.SetValue("Parent ID", ValueConv::LongToField(Parent_ID));
    });
    on.Do([&] { rsOrganizations.Requery(); });
    if (id == 0) return answer;
    Organization_ID = id;

    if (rsProjects && !Blank(rProject)) {
        AddRow(*rsProjects, "Owner ID", on, [&] {
            rsProjects->SetValue("Owner ID", Variant(std::int64_t{Organization_ID}));
            rsProjects->SetValue("OwnerType", Variant(std::int64_t{oOrganization_ID}));
            rsProjects->SetValue("Project", Variant(rProject));
            rsProjects->SetValue("InsArcPrj", Variant(InsArcPrj));
        });
        on.Do([&] { rsProjects->Requery(); });
    }
    return answer;
}

void GetOrgPath(std::int32_t OrganizationID, dao::Recordset& rsOrganizations, std::string& SubDivisions,
                std::string& OrgName, std::int32_t& TopOrganizationID) {
    OnErrorResumeNext on("Module1.GetOrgPath");
    if (OrganizationID == 0) return;
    if (on.Resume([&] { return rsOrganizations.RecordCount() == 0; }, true)) return;
    SubDivisions.clear();
    // A damaged book may hold a [Parent ID] cycle; the walk ends at the
    // first unit it meets twice, as at a missing parent.
    std::unordered_set<std::int32_t> seen;
    std::int32_t id = OrganizationID;
    while (seen.insert(id).second) {
        on.Do([&] { rsOrganizations.MoveFirst(); });
        if (!on.Do([&] { rsOrganizations.FindFirst("[Organization ID]=" + std::to_string(id)); })) return;
        if (on.Resume([&] { return rsOrganizations.NoMatch(); }, true)) return;
        std::string name = Trimmed(on.Resume([&] { return ValueConv::ToText(rsOrganizations("Organization")); }));
        std::int32_t parent = on.Resume([&] { return ValueConv::ToLong(rsOrganizations("Parent ID")); });
        if (parent < 1) {
            OrgName = name;
            TopOrganizationID = id;
            return;
        }
        if (!name.empty()) SubDivisions = SubDivisions.empty() ? name : name + ", " + SubDivisions;
        id = parent;
    }
}

std::int32_t FindOrgOfJob(std::int32_t JobID) {
    OnErrorResumeNext on("Module1.FindOrgOfJob");
    OwnDatabase own(on);
    if (!own.IsOpen()) return 0;
    dao::Recordset rs = on.Resume([&] { return own.db.OpenRecordset("JobTitles", dao::dbOpenDynaset); });
    if (!rs) return 0;
    std::int32_t unit = 0;
    if (on.Do([&] { rs.FindFirst("[Job ID]=" + std::to_string(JobID)); }) &&
        !on.Resume([&] { return rs.NoMatch(); }, true))
        unit = on.Resume([&] { return ValueConv::ToLong(rs("Organization ID")); });
    on.Do([&] { rs.Close(); });
    return unit;
}

std::int32_t FindJobOfEmployee(std::int32_t EmployeeID, std::int32_t& RoomID, std::int32_t& PersonalID) {
    OnErrorResumeNext on("Module1.FindJobOfEmployee");
    OwnDatabase own(on);
    if (!own.IsOpen()) return 0;
    dao::Recordset rs = on.Resume([&] { return own.db.OpenRecordset("Employees", dao::dbOpenDynaset); });
    if (!rs) return 0;
    std::int32_t job = 0;
    if (on.Do([&] { rs.FindFirst("[Employee ID]=" + std::to_string(EmployeeID)); }) &&
        !on.Resume([&] { return rs.NoMatch(); }, true)) {
        job = on.Resume([&] { return ValueConv::ToLong(rs("Job ID")); });
        RoomID = on.Resume([&] { return ValueConv::ToLong(rs("Room ID")); });
        PersonalID = on.Resume([&] { return ValueConv::ToLong(rs("Personal ID")); });
    }
    on.Do([&] { rs.Close(); });
    return job;
}

std::string UnitCaption(const std::string& UnitName) {
    if (!Blank(UnitName)) return UnitName;
    return LngText("frmSelectOrg.GetOrgName", "txt1", "Organization with no name");
}

std::string RootCaption() { return LngText("frmSelectOrg.GetOrgName", "txt2", "Organizations"); }

std::string JobTitleCaption(const std::string& JobTitle, const std::string& UnitName) {
    if (!Blank(JobTitle)) return JobTitle + " [" + UnitCaption(UnitName) + "]";
    return WithUnit(LngText("frmSelectOrg.NavigateInsJobTitle", "Caption", "Job title without a name [%1]"),
                    UnitCaption(UnitName));
}

std::string EmployeeCaption(const std::string& FullName, const std::string& UnitName) {
    std::string name = Trimmed(FullName);
    if (!name.empty()) return name + " [" + UnitCaption(UnitName) + "]";
    return WithUnit(LngText("frmSelectOrg.NavigateInsEmployee", "caption", "Vacancy or employee with no name [%1]"),
                    UnitCaption(UnitName));
}

std::int32_t AddJobTitle(dao::Recordset& rsJobTitles, std::int32_t OrganizationID, const std::string& Answer) {
    if (Blank(Answer)) return 0;
    OnErrorResumeNext on("frmSelectOrg.NewJobTitle");
    std::int32_t id = AddRow(rsJobTitles, "Job ID", on, [&] {
        if (Answer != kNoNameAnswer) rsJobTitles.SetValue("JobTitle", Variant(Answer));
        rsJobTitles.SetValue("Organization ID", Variant(std::int64_t{OrganizationID}));
    });
    on.Do([&] { rsJobTitles.Requery(); });
    return id;
}

std::int32_t AddEmployee(std::int32_t JobID, std::int32_t PersonalID) {
    OnErrorResumeNext on("frmSelectOrg.NewEmployee");
    OwnDatabase own(on);
    if (!own.IsOpen()) return 0;
    dao::Recordset rs = on.Resume([&] { return own.db.OpenRecordset("Employees", dao::dbOpenDynaset); });
    if (!rs) return 0;
    std::int32_t id = AddRow(rs, "Employee ID", on, [&] {
        rs.SetValue("Job ID", Variant(std::int64_t{JobID}));
        rs.SetValue("Personal ID", Variant(std::int64_t{PersonalID}));
    });
    on.Do([&] { rs.Close(); });
    return id;
}

std::int32_t AddNewPersonAsEmployee(std::int32_t JobID, std::int32_t& EmployeeID) {
    OnErrorResumeNext on("frmSelectOrg.NewEmployee");
    std::int32_t person = 0;
    {
        OwnDatabase own(on);
        if (!own.IsOpen()) return 0;
        dao::Recordset rs = on.Resume([&] { return own.db.OpenRecordset("PersonalData", dao::dbOpenDynaset); });
        if (!rs) return 0;
        person = AddRow(rs, "Personal ID", on, [] {});
        on.Do([&] { rs.Close(); });
    }
    if (person != 0) EmployeeID = AddEmployee(JobID, person);
    return person;
}

}  // namespace zelvo
