#include "zelvo/addressbook.h"

#include "hostservices/shell_actions.h"
#include "personswindow/frm_persons.h"
#include "personslist/lvw_add_persons.h"
#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "automation/office_side.h"
#include "resources/resource_ops.h"
#include "store/compress_db.h"
#include "store/correct_db.h"
#include "store/library_state.h"

namespace zelvo {

namespace {

cAddressbook::OfficeObjectsNavigator& OfficeNavigator() {
    static cAddressbook::OfficeObjectsNavigator navigator;
    return navigator;
}

constexpr const char* kNavigateLabel = "zelvo.dll\\cAddressbook\\Navigate";

}  // namespace

cAddressbook::OfficeObjectsNavigator cAddressbook::SetOfficeObjectsNavigator(OfficeObjectsNavigator navigator) {
    OfficeObjectsNavigator previous = std::move(OfficeNavigator());
    OfficeNavigator() = std::move(navigator);
    return previous;
}

void cAddressbook::EnterCall() const {
    InstallOfficeSide();
    zelvo::AppPath = AppPath;
}

void cAddressbook::CorrectDB(std::string& Path) {
    EnterCall();
    zelvo::CorrectDB(Path);
}

void cAddressbook::CompressDB() {
    EnterCall();
    zelvo::CompressDB("");
}

std::string cAddressbook::GetDatabasename() {
    EnterCall();
    ShellPaths().SetAppPath(zelvo::AppPath);
    return DatabasePath();
}

void cAddressbook::Navigate(ui::ListView* Listview1, ui::DataControl* /*DataPersonal*/,
                            ui::DataControl* /*DataEmail*/, const Variant& Icon) {
    EnterCall();
    dao::Database db;
    dao::Recordset rs;
    auto list = [&]() -> ui::ListView& {
        if (!Listview1) throw Error(91, "Object variable or With block variable not set", "cAddressbook");
        return *Listview1;
    };
    try {
        db = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access");
        if (Flags2 & ShowPersons) {
            EnterCall();
            // Flags 0 (AllPersons) and 2 (CurPrj) alike give the project's members.
            std::string query = Flags == NoPrj ? GetNoPrjPersonsQuery() : GetPrjPersonsQuery(rProject, InsArcPrj, CurPrj);
            rs = db.OpenRecordset(query, dao::dbOpenDynaset);
            LvwAddPersons2(list(), rs, 2, Icon, false, nullptr, nullptr, 1395, 1860);
            rs.Close();
        }
        if (const OfficeObjectsNavigator& office = OfficeNavigator()) {
            if (Flags2 & (ShowOrg | ShowSubDiv)) office(*this, list(), db, oOrganization_ID);
            // Job titles and employees never show for the persons of no project.
            if (Flags != NoPrj) {
                if (Flags2 & ShowJobTitles) office(*this, list(), db, oJob_ID);
                if (Flags2 & ShowEmployees) office(*this, list(), db, oEmployees_ID);
            }
        }
        db.Close();
    } catch (const Error& e) {
        ShellPaths().ReportError(e, kNavigateLabel);
        if (rs.IsOpen()) rs.Close();
        if (db.IsOpen()) db.Close();
        Err().Clear();
    }
}

bool cAddressbook::ResourceExists(std::int32_t Owner_ID, std::int32_t OwnerType, std::int32_t resType) {
    EnterCall();
    return OwnerHasResource(Owner_ID, OwnerType, resType);
}

void cAddressbook::ShowAddressBook() {
    EnterCall();
    PickPerson(rProject, InsArcPrj, 0, 0, false);
}

void cAddressbook::SpaceNavigate(std::int32_t SpaceID, std::int32_t spaceItemNumber) {
    EnterCall();
    SharedMailSettings().SetAppPath(shell::ProgramFolder());
    std::string path = GetDatabasename();
    CorrectDB(path);
    switch (spaceItemNumber) {
        case 3: PickPerson(rProject, InsArcPrj, 0, SpaceID, false); break;
        // 1, the address window, and 2, the organization window, open here
        // once those windows exist.
        default: break;
    }
}

}  // namespace zelvo
