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
// A unit's deletion reads the identities of its branch (units, rooms) once
// and then deletes by sets, a few statements for each kind of row, however
// many employees and job titles the branch holds.
//
// Each deletion is one transaction of the book, however many rows it takes
// along: it is kept whole or not at all. An engine error midway (a locked
// or full book, a row that cannot be written) undoes everything it had
// deleted and goes on to the caller, so the book is never left with half an
// organization, as the older program could leave it. The one transaction
// also spares a sync of the file for each row. A missing row is told to the
// person and gives False, with nothing deleted.
//
// Every read and write of a deletion goes through the one Database of this
// object: another connection on the file would wait for the transaction's
// lock.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

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
    // row was deleted. A unit that is not in the book shows a warning and
    // gives False; the book is then left as it was.
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
    // DeleteOrg inside its transaction.
    bool DeleteUnitTree(std::int32_t Organization_ID);
    // DeleteOrgRooms and MoveEmployeesFromRoom inside the transaction of
    // their caller; DeleteRoomsOfUnits for the units of a branch, in the
    // order given.
    void DeleteRoomsOfOrg(std::int32_t Organization_ID);
    void DeleteRoomsOfUnits(const std::vector<std::int32_t>& units);
    void MoveOutOfRoom(std::int32_t Room_ID);
    // The resources of one owner go, each with its last link.
    void RemoveOwnerResources(std::int32_t Owner_ID, std::int32_t OwnerType);
    // The cascade of the job title `job`, and its row.
    bool DeleteJobCascade(std::int32_t job);
    // The employee row on which `rs` stands, with its resources.
    bool DeleteCurrentEmployee(dao::Recordset& rs);
    // Deletes the rows below `Room_ID`; the identities deleted are added to
    // `gone`.
    void DeleteRoomsBelow(std::int32_t Room_ID, std::unordered_set<std::int32_t>& gone);

    dao::Database db;
};

// Called before each row a deletion removes (units, job titles, employees,
// rooms), so that tests can make a deletion fail midway; a statement that
// deletes many rows calls it once for each. Returns the hook that was set.
using DeletionFaultHook = std::function<void()>;
DeletionFaultHook SetDeletionFaultHook(DeletionFaultHook hook);

}  // namespace zelvo
