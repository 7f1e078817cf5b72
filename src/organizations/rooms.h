// The premises of an organization without a window: a tree of containers
// (a building, a floor) and rooms, in which employees sit and phones hang.
//
// Rows of Rooms belong to the organization at the top of the unit tree,
// never to a subdivision, so all units of one organization see one tree of
// premises. [rParent ID] 0 or Null is the top of that tree. The organization
// window walks the tree through these; its list and tool bar only show
// what they give.
//
// Failures of the engine are passed over, as in the window: nothing here
// throws.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "organizations/db_zelvo.h"
#include "platform/dao/recordset.h"

namespace zelvo {

// One step of the way from the top of the premises to a room.
struct RoomPathEntry {
    std::int32_t RoomID = 0;
    std::string RoomName;
    friend bool operator==(const RoomPathEntry&, const RoomPathEntry&) = default;
};

// Makes the room `Room_ID` of `rsRooms` current; false when the record set
// is empty or has no such row.
bool FindRoom(dao::Recordset& rsRooms, std::int32_t Room_ID);

// The way from the top down to the room `Room_ID` itself, read from
// `rsRooms`. Ends (at the top) where a parent is 0, is missing, or was
// already met (a cycle in a damaged book). Empty when the room is missing.
std::vector<RoomPathEntry> GetRoomPath(dao::Recordset& rsRooms, std::int32_t Room_ID);

// Places the employee row `Employee_ID` in the room `Room_ID` (0 takes it
// out of its room). False for employee 0 or a row that is not there. Opens
// the book itself.
bool GoToRoom(std::int32_t Employee_ID, std::int32_t Room_ID);

// The organization at the top of the unit `UnitID`: the unit itself when it
// has no parent; 0 when it is missing or its walk up ends without a top.
std::int32_t TopOrganizationOf(std::int32_t UnitID);

// Makes a container (IsContainer) or a room named `Name` under `rParent_ID`
// for the unit `UnitID`: the row belongs to the unit's top organization.
// A blank name, or a unit with no top organization, writes nothing. The
// record set is re-queried. Returns the new [Room ID], 0 when nothing was
// written.
std::int32_t AddRoom(dao::Recordset& rsRooms, std::int32_t UnitID, std::int32_t rParent_ID, const std::string& Name,
                     bool IsContainer);

// Deletes the room `Room_ID`: the rooms below it, its phones, its employees
// moved out (they keep their jobs), then its row in `rsRooms` (the
// window's record set of rooms, re-queried). A room that is not there is
// told to the person ("Room or container is not found in database!") and
// gives False; what is below it still goes.
bool DeleteRoom(dbZelvo& zelvo, dao::Recordset& rsRooms, std::int32_t Room_ID);

}  // namespace zelvo
