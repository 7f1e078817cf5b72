#include "organizations/rooms.h"

#include <algorithm>
#include <unordered_set>

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "organizations/org_model.h"
#include "store/own_database.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/ui/ui_host.h"
#include "resources/resource_ops.h"
#include "zelvo/enums.h"

namespace zelvo {

namespace {
std::string RoomCriteria(std::int32_t id) { return "[Room ID]=" + std::to_string(id); }
}  // namespace

bool FindRoom(dao::Recordset& rsRooms, std::int32_t Room_ID) {
    OnErrorResumeNext on("frmSelectOrg.FindRoom");
    if (on.Resume([&] { return rsRooms.IsEOF() && rsRooms.IsBOF(); }, true)) return false;
    if (!on.Do([&] { rsRooms.MoveLast(); })) return false;
    if (!on.Do([&] { rsRooms.FindLast(RoomCriteria(Room_ID)); })) return false;
    return !on.Resume([&] { return rsRooms.NoMatch(); }, true);
}

std::vector<RoomPathEntry> GetRoomPath(dao::Recordset& rsRooms, std::int32_t Room_ID) {
    OnErrorResumeNext on("frmSelectOrg.GetRoomPath");
    std::vector<RoomPathEntry> path;
    std::unordered_set<std::int32_t> seen;
    std::int32_t id = Room_ID;
    // Each step finds from the front: the engine answers that by a lookup,
    // where a search from the back would read the whole set every time.
    auto find = [&](std::int32_t room) {
        return on.Do([&] { rsRooms.MoveFirst(); }) && on.Do([&] { rsRooms.FindFirst(RoomCriteria(room)); }) &&
               !on.Resume([&] { return rsRooms.NoMatch(); }, true);
    };
    while (id != 0 && seen.insert(id).second && find(id)) {
        path.push_back({id, on.Resume([&] { return ValueConv::ToText(rsRooms("RoomName")); })});
        id = on.Resume([&] { return ValueConv::ToLong(rsRooms("rParent ID")); });
    }
    std::reverse(path.begin(), path.end());
    return path;
}

bool GoToRoom(std::int32_t Employee_ID, std::int32_t Room_ID) {
    if (Employee_ID == 0) return false;
    OnErrorResumeNext on("frmSelectOrg.GoToRoom");
    OwnDatabase own(on);
    if (!own.IsOpen()) return false;
    dao::Recordset rs = on.Resume([&] {
        return own.db.OpenRecordset("Select * from Employees Where [Employee ID]=" + std::to_string(Employee_ID) + ";");
    });
    if (!rs) return false;
    bool found = !on.Resume([&] { return rs.IsEOF(); }, true);
    if (found) {
        found = on.Do([&] {
            rs.Edit();
            rs.SetValue("Room ID", Variant(std::int64_t{Room_ID}));
            rs.Update();
        });
    }
    on.Do([&] { rs.Close(); });
    return found;
}

std::int32_t TopOrganizationOf(std::int32_t UnitID) {
    OnErrorResumeNext on("frmSelectOrg.TopOrganization");
    OwnDatabase own(on);
    if (!own.IsOpen()) return 0;
    dao::Recordset rs = on.Resume([&] { return own.db.OpenRecordset("Organizations", dao::dbOpenDynaset); });
    if (!rs) return 0;
    std::string subDivisions, orgName;
    std::int32_t top = 0;
    GetOrgPath(UnitID, rs, subDivisions, orgName, top);
    on.Do([&] { rs.Close(); });
    return top;
}

std::int32_t AddRoom(dao::Recordset& rsRooms, std::int32_t UnitID, std::int32_t rParent_ID, const std::string& Name,
                     bool IsContainer) {
    if (Name.find_first_not_of(' ') == std::string::npos) return 0;
    std::int32_t organization = TopOrganizationOf(UnitID);
    if (organization == 0) return 0;
    OnErrorResumeNext on("frmSelectOrg.Toolbar2_ButtonClick");
    std::int32_t id = 0;
    bool written = on.Do([&] {
        rsRooms.AddNew();
        rsRooms.SetValue("Organization ID", Variant(std::int64_t{organization}));
        rsRooms.SetValue("RoomName", Variant(Name));
        rsRooms.SetValue("rParent ID", Variant(std::int64_t{rParent_ID}));
        if (IsContainer) rsRooms.SetValue("IsContainer", Variant(true));
        id = ValueConv::ToLong(rsRooms("Room ID"));
        rsRooms.Update();
    });
    if (!written) {
        on.Do([&] { rsRooms.CancelUpdate(); });
        id = 0;
    }
    on.Do([&] { rsRooms.Requery(); });
    return id;
}

bool DeleteRoom(dbZelvo& zelvo, dao::Recordset& rsRooms, std::int32_t Room_ID) {
    OnErrorResumeNext on("frmSelectOrg.DeleteRoom");
    on.Do([&] { zelvo.DeleteChildRooms(Room_ID); });
    on.Do([&] { rsRooms.Requery(); });
    bool found = false;
    if (!on.Resume([&] { return rsRooms.IsEOF() && rsRooms.IsBOF(); }, true)) {
        on.Do([&] { rsRooms.MoveFirst(); });
        on.Do([&] { rsRooms.FindFirst(RoomCriteria(Room_ID)); });
        found = !on.Resume([&] { return rsRooms.NoMatch(); }, true);
    }
    {
        OwnDatabase own(on);
        dao::Recordset resources = on.Resume([&] { return own.db.OpenRecordset("Resources", dao::dbOpenDynaset); });
        if (resources) {
            DeleteOwnerResources(Room_ID, oRoom_ID, resources);
            on.Do([&] { resources.Close(); });
        }
    }
    on.Do([&] { zelvo.MoveEmployeesFromRoom(Room_ID); });
    if (!found) {
        UniMsgBox(LngText("frmSelectOrg.DeleteRoom", "msg", "Room or container is not found in database!"),
                  ui::vbExclamation);
        return false;
    }
    // The phones went through a record set of their own; the room's row is
    // found again, as the steps above may have moved the current row.
    if (!FindRoom(rsRooms, Room_ID)) return false;
    bool deleted = on.Do([&] { rsRooms.Delete(); });
    on.Do([&] { rsRooms.Requery(); });
    return deleted;
}

}  // namespace zelvo
