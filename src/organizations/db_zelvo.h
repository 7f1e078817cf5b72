// dbZelvo: every deletion on the office side, and the texts of rooms.
//
// The book declares no relation, so nothing cascades by itself: deleting a
// unit, a job title, an employee or a room is a walk, and this class holds
// its order. What goes with what:
//
//   unit (organization or subdivision): its resources (owner type 1); its
//       rooms, the employees placed in them moved out first; its job titles
//       with their employee rows; its subordinate units, each the same way;
//       then the row itself.
//   job title: its resources (type 2), every employee row of the job
//       (vacancies too), the row.
//   employee: its resources (type 4), the row.
//   room reached by DeleteChildRooms: all rooms below it, its phones (type
//       16), its employees moved out ([Room ID] 0), the row.
//
// Never deleted here: the persons behind employee rows, and the Projects and
// AddressesOwners rows of a deleted object (every list that reads them
// joins the owner's table, so they show nowhere). A resource goes only with
// its last link, so one shared with another owner survives.
//
// A damaged book (a [Parent ID] or [rParent ID] cycle edited in by hand)
// does not hang a walk: a unit or room met a second time is passed over.
// The walks keep their own stack, so a chain of any depth is fine.
//
// Engine errors are not caught here (the callers pass over them): a failure
// midway leaves what was deleted so far deleted. A missing row is told to
// the person and gives False.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>

#include "platform/dao/database.h"
#include "platform/dao/recordset.h"

namespace zelvo {

class dbZelvo {
public:
    // Opens the book at DatabasePath() for the life of the object. When it
    // cannot be opened, every member raises the engine's error.
    dbZelvo();
    ~dbZelvo();
    dbZelvo(const dbZelvo&) = delete;
    dbZelvo& operator=(const dbZelvo&) = delete;

    // Deletes the unit and everything below it (see above). True when the
    // row was deleted. A unit that is not in the book, or a subordinate unit
    // that vanished during the walk, shows a warning and gives False; the
    // unit then remains, and what was deleted before stays deleted.
    bool DeleteOrg(std::int32_t Organization_ID);

    // Deletes the job title `Job_ID`, found in the caller's record set
    // `rsJobTitles` (which is re-queried). Not found: a critical message and
    // False.
    bool DeleteJobTitle(std::int32_t Job_ID, dao::Recordset& rsJobTitles);

    // Deletes the employee row `Employee_ID` of the job `Job_ID`. A job with
    // no rows gives False; a row not in it gives a warning and False.
    bool DeleteEmployee(std::int32_t Employee_ID, std::int32_t Job_ID);

    // Deletes the rooms of the organization (only top-level units hold
    // rooms), moving their employees out first. The phones of these rooms
    // stay unless the room lay under another room of the list.
    void DeleteOrgRooms(std::int32_t Organization_ID);

    // Deletes every room below `Room_ID`, with their phones, moving their
    // employees out; the room itself stays. False for 0, else True.
    bool DeleteChildRooms(std::int32_t Room_ID);

    // Takes every employee out of the room ([Room ID] := 0); they stay in
    // their jobs. False for 0, else True (also when nobody sat there).
    bool MoveEmployeesFromRoom(std::int32_t Room_ID);

    // The text of a room: the names from the top down, joined by ", ". ""
    // for 0 or a room that is not there; a room whose parent is gone is its
    // own name alone.
    std::string GetRoomStringFromID(std::int32_t Room_ID);
    // The same read from `rsRooms` (a record set over Rooms; its position
    // moves).
    std::string RoomStringByRecordset(dao::Recordset& rsRooms, std::int32_t Room_ID);

private:
    // The resources of one owner go, each with its last link.
    void RemoveOwnerResources(std::int32_t Owner_ID, std::int32_t OwnerType);
    // The cascade of the job title on which `rs` stands, and the row.
    bool DeleteCurrentJobTitle(dao::Recordset& rs);
    // The employee row on which `rs` stands, with its resources.
    bool DeleteCurrentEmployee(dao::Recordset& rs);
    // Everything of one unit but its subordinate units and its own row.
    void DeleteUnitContents(std::int32_t Organization_ID);
    // Deletes the rows below `Room_ID`; the identities deleted are added to
    // `gone`.
    void DeleteRoomsBelow(std::int32_t Room_ID, std::unordered_set<std::int32_t>& gone);

    dao::Database db;
    dao::Recordset rsResources;
};

}  // namespace zelvo
