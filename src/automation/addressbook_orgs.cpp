// The office members of cAddressbook, and the joining of the office side
// to the projects and to Navigate.
#include "automation/office_side.h"
#include "organizations/db_zelvo.h"
#include "organizations/office_objects.h"
#include "organizations/org_model.h"
#include "store/own_database.h"
#include "platform/core/error.h"
#include "projects/org_deletion.h"
#include "zelvo/addressbook.h"

namespace zelvo {

void InstallOfficeSide() {
    OrgDeleter current = SetOrgDeleter(nullptr);
    if (!current) current = [](std::int32_t id) { return dbZelvo().DeleteOrg(id); };
    SetOrgDeleter(std::move(current));

    cAddressbook::OfficeObjectsNavigator navigator = cAddressbook::SetOfficeObjectsNavigator(nullptr);
    if (!navigator)
        navigator = [](cAddressbook& book, ui::ListView& list, const dao::Database& db, std::int32_t ownerType) {
            NavigateABObjectsInsPrj(ownerType, list, book.rProject, book.InsArcPrj, book.Flags2, book.tagOffset, db);
        };
    cAddressbook::SetOfficeObjectsNavigator(std::move(navigator));
}

std::string cAddressbook::AddNewOfficeObject(ui::DataControl*, std::int32_t ObjType, std::int32_t& Parent_ID,
                                             std::string& Icon, std::int32_t& Organization_ID, ui::DataControl*,
                                             std::string& rProject_, bool& InsArcPrj_) {
    EnterCall();
    // Job titles and employees are made only in the organization window and
    // on the person card, which know the unit and the person.
    if (ObjType != Org && ObjType != SubDiv) return {};
    OnErrorResumeNext on("cAddressbook.AddNewOfficeObject");
    OwnDatabase own(on);
    if (!own.IsOpen()) return {};
    dao::Recordset orgs = on.Resume([&] { return own.db.OpenRecordset("Organizations", dao::dbOpenDynaset); });
    dao::Recordset projects = on.Resume([&] { return own.db.OpenRecordset("Projects", dao::dbOpenDynaset); });
    if (!orgs) return {};
    std::string name = NewOrg(orgs, ObjType, Parent_ID, Icon, Organization_ID, projects ? &projects : nullptr,
                              rProject_, InsArcPrj_);
    on.Do([&] { orgs.Close(); });
    if (projects) on.Do([&] { projects.Close(); });
    return name;
}

}  // namespace zelvo
