#include "organizations/db_zelvo.h"

#include <utility>
#include <vector>

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "organizations/org_sql.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/ui/ui_host.h"
#include "resources/resource_ops.h"
#include "store/book_transaction.h"
#include "store/library_state.h"
#include "zelvo/enums.h"

namespace zelvo {

namespace {

std::string Id(std::int32_t id) { return std::to_string(id); }

DeletionFaultHook& FaultHook() {
    static DeletionFaultHook hook;
    return hook;
}

void BeforeRowDeleted() {
    if (FaultHook()) FaultHook()();
}

// Runs `body` as one transaction of `db` and keeps what it wrote when it
// gives true; false or an error undoes it.
template <class F>
bool AllOrNothing(const dao::Database& db, F&& body) {
    BookTransaction transaction(db);
    if (!body()) return false;
    transaction.Commit();
    return true;
}

// The values of `column` in the rows of `sql`, from the last row to the
// first: the order in which the walks visit rows. Reading them first keeps
// a walk whole whatever the steps do to the rows after.
std::vector<std::int32_t> IdsLastToFirst(const dao::Database& db, const std::string& sql, const char* column) {
    std::vector<std::int32_t> ids;
    dao::Recordset rs = db.OpenRecordset(sql, dao::dbOpenSnapshot);
    while (!rs.IsEOF()) {
        ids.push_back(ValueConv::ToLong(rs(column)));
        rs.MoveNext();
    }
    rs.Close();
    return {ids.rbegin(), ids.rend()};
}

// Deletes the row of `table` whose `idColumn` is `id`; false when there was
// none.
bool DeleteRowById(const dao::Database& db, const char* table, const char* idColumn, std::int32_t id) {
    dao::Recordset rs =
        db.OpenRecordset(std::string("Select * from ") + table + " Where [" + idColumn + "]=" + Id(id) + ";");
    bool found = !rs.IsEOF();
    if (found) {
        BeforeRowDeleted();
        rs.Delete();
    }
    rs.Close();
    return found;
}

}  // namespace

dbZelvo::dbZelvo() {
    OnErrorResumeNext on("dbZelvo.Class_Initialize");
    db = on.Resume([] { return DBEngine().OpenDatabase(DatabasePath(), false, false, "Access"); });
}

dbZelvo::~dbZelvo() {
    OnErrorResumeNext on("dbZelvo.Class_Terminate");
    if (db.IsOpen()) on.Do([&] { db.Close(); });
}

DeletionFaultHook SetDeletionFaultHook(DeletionFaultHook hook) { return std::exchange(FaultHook(), std::move(hook)); }

void dbZelvo::RemoveOwnerResources(std::int32_t Owner_ID, std::int32_t OwnerType) {
    DeleteOwnerResourcesIn(db, Owner_ID, OwnerType);
}

bool dbZelvo::DeleteOrg(std::int32_t Organization_ID) {
    return AllOrNothing(db, [&] { return DeleteUnitTree(Organization_ID); });
}

bool dbZelvo::DeleteUnitTree(std::int32_t Organization_ID) {
    // The units are walked depth first with a stack of our own: a unit's
    // contents go when it is reached, its row once all units below it are
    // gone. A unit met again (a cycle) counts as done.
    struct Frame {
        std::int32_t id;
        std::vector<std::int32_t> children;
        std::size_t next = 0;
    };
    std::unordered_set<std::int32_t> seen{Organization_ID};
    std::vector<Frame> stack;
    auto enter = [&](std::int32_t id) {
        DeleteUnitContents(id);
        stack.push_back({id, IdsLastToFirst(db, OrgChildrenSQL(id), "Organization ID")});
    };
    enter(Organization_ID);
    while (!stack.empty()) {
        Frame& top = stack.back();
        if (top.next < top.children.size()) {
            std::int32_t child = top.children[top.next++];
            if (seen.insert(child).second) enter(child);
            continue;
        }
        if (!DeleteRowById(db, "Organizations", "Organization ID", top.id)) {
            // Fixed text of the walk, shown as it always was.
            UniMsgBox("Организация или подразделение не найдены в базе!", ui::vbExclamation);
            return false;
        }
        stack.pop_back();
    }
    return true;
}

void dbZelvo::DeleteUnitContents(std::int32_t Organization_ID) {
    RemoveOwnerResources(Organization_ID, oOrganization_ID);
    DeleteRoomsOfOrg(Organization_ID);
    for (std::int32_t job : IdsLastToFirst(db, JobTitlesOfOrgSQL(Organization_ID), "Job ID")) DeleteJobCascade(job);
}

bool dbZelvo::DeleteJobTitle(std::int32_t Job_ID, dao::Recordset& rsJobTitles) {
    OnErrorResumeNext on("dbZelvo.DeleteJobTitle");
    on.Do([&] { rsJobTitles.MoveFirst(); });
    on.Do([&] { rsJobTitles.FindFirst("[Job ID]=" + Id(Job_ID)); });
    if (on.Resume([&] { return rsJobTitles.NoMatch(); }, true)) {
        UniMsgBox(LngText("dbZelvo.DeleteJobTitle", "msg", "Job title is not found in database!"), ui::vbCritical);
        return false;
    }
    bool done = on.Resume([&] { return AllOrNothing(db, [&] { return DeleteJobCascade(ValueConv::ToLong(rsJobTitles("Job ID"))); }); });
    on.Do([&] { rsJobTitles.Requery(); });
    return done;
}

bool dbZelvo::DeleteJobCascade(std::int32_t job) {
    RemoveOwnerResources(job, oJob_ID);
    // Every row of the job goes, vacancies too. One that cannot be deleted
    // fails the whole deletion: passing over it would leave an employee row
    // whose job is gone.
    dao::Recordset employees = db.OpenRecordset(EmployeesOfJobSQL(job));
    if (!employees.IsEOF()) {
        employees.MoveLast();
        while (!employees.IsBOF()) {
            DeleteCurrentEmployee(employees);
            employees.MovePrevious();
        }
    }
    employees.Close();
    // The row goes through this object's connection, which holds the
    // transaction, whoever's record set found it.
    return DeleteRowById(db, "JobTitles", "Job ID", job);
}

bool dbZelvo::DeleteEmployee(std::int32_t Employee_ID, std::int32_t Job_ID) {
    OnErrorResumeNext on("dbZelvo.DeleteEmployee");
    dao::Recordset rs = on.Resume([&] { return db.OpenRecordset(EmployeesOfJobSQL(Job_ID)); });
    if (!rs || on.Resume([&] { return rs.IsEOF(); }, true)) {
        if (rs) on.Do([&] { rs.Close(); });
        return false;
    }
    on.Do([&] { rs.FindFirst("[Employee ID]=" + Id(Employee_ID)); });
    if (on.Resume([&] { return rs.NoMatch(); }, true)) {
        UniMsgBox(LngText("dbZelvo.DeleteEmployee", "msg", "The employee is not found in database!"),
                  ui::vbExclamation);
        on.Do([&] { rs.Close(); });
        return false;
    }
    bool done = on.Resume([&] { return AllOrNothing(db, [&] { return DeleteCurrentEmployee(rs); }); });
    on.Do([&] { rs.Close(); });
    return done;
}

bool dbZelvo::DeleteCurrentEmployee(dao::Recordset& rs) {
    if (rs.IsEOF() && rs.IsBOF()) return false;
    RemoveOwnerResources(ValueConv::ToLong(rs("Employee ID")), oEmployees_ID);
    BeforeRowDeleted();
    rs.Delete();
    return true;
}

void dbZelvo::DeleteOrgRooms(std::int32_t Organization_ID) {
    AllOrNothing(db, [&] {
        DeleteRoomsOfOrg(Organization_ID);
        return true;
    });
}

void dbZelvo::DeleteRoomsOfOrg(std::int32_t Organization_ID) {
    std::unordered_set<std::int32_t> gone;
    for (std::int32_t room :
         IdsLastToFirst(db, "Select * from Rooms where Rooms.[Organization ID]=" + Id(Organization_ID) + ";", "Room ID")) {
        // A room that lay under one deleted earlier in this walk is gone.
        if (gone.count(room)) continue;
        MoveOutOfRoom(room);
        DeleteRowById(db, "Rooms", "Room ID", room);
        gone.insert(room);
        DeleteRoomsBelow(room, gone);
    }
}

bool dbZelvo::DeleteChildRooms(std::int32_t Room_ID) {
    if (Room_ID == 0) return false;
    return AllOrNothing(db, [&] {
        std::unordered_set<std::int32_t> gone;
        DeleteRoomsBelow(Room_ID, gone);
        return true;
    });
}

void dbZelvo::DeleteRoomsBelow(std::int32_t Room_ID, std::unordered_set<std::int32_t>& gone) {
    // Depth first with a stack of our own, each room after the rooms below
    // it; a room met again (a cycle) is passed over.
    struct Frame {
        std::int32_t id;
        std::vector<std::int32_t> children;
        std::size_t next = 0;
    };
    std::unordered_set<std::int32_t> seen{Room_ID};
    auto childrenOf = [&](std::int32_t id) {
        return IdsLastToFirst(db, "Select * from Rooms Where [rParent ID]=" + Id(id) + ";", "Room ID");
    };
    std::vector<Frame> stack;
    stack.push_back({Room_ID, childrenOf(Room_ID)});
    while (!stack.empty()) {
        Frame& top = stack.back();
        if (top.next < top.children.size()) {
            std::int32_t child = top.children[top.next++];
            if (seen.insert(child).second && !gone.count(child)) stack.push_back({child, childrenOf(child)});
            continue;
        }
        std::int32_t room = top.id;
        stack.pop_back();
        if (stack.empty()) break;  // the room we started from stays
        RemoveOwnerResources(room, oRoom_ID);
        MoveOutOfRoom(room);
        DeleteRowById(db, "Rooms", "Room ID", room);
        gone.insert(room);
    }
}

bool dbZelvo::MoveEmployeesFromRoom(std::int32_t Room_ID) {
    if (Room_ID == 0) return false;
    return AllOrNothing(db, [&] {
        MoveOutOfRoom(Room_ID);
        return true;
    });
}

void dbZelvo::MoveOutOfRoom(std::int32_t Room_ID) {
    dao::Recordset rs = db.OpenRecordset("Select * from Employees Where [Room ID]=" + Id(Room_ID) + ";");
    if (!rs.IsEOF()) {
        rs.MoveLast();
        while (!rs.IsBOF()) {
            rs.Edit();
            rs.SetValue("Room ID", Variant(std::int64_t{0}));
            rs.Update();
            rs.MovePrevious();
        }
    }
    rs.Close();
}

std::string dbZelvo::GetRoomStringFromID(std::int32_t Room_ID) {
    if (Room_ID == 0) return {};
    dao::Recordset rs = db.OpenRecordset("Rooms", dao::dbOpenDynaset);
    std::string text;
    if (!rs.IsEOF()) text = RoomStringByRecordset(rs, Room_ID);
    rs.Close();
    return text;
}

std::string dbZelvo::RoomStringByRecordset(dao::Recordset& rsRooms, std::int32_t Room_ID) {
    // The names from the room up to the top (or to a missing parent, or to
    // a room met again), then joined from the top down.
    std::vector<std::string> names;
    std::unordered_set<std::int32_t> seen;
    std::int32_t id = Room_ID;
    while (seen.insert(id).second) {
        rsRooms.MoveFirst();
        rsRooms.FindFirst("[Room ID]=" + Id(id));
        if (rsRooms.NoMatch()) break;
        names.push_back(ValueConv::ToText(rsRooms("RoomName")));
        id = ValueConv::ToLong(rsRooms("rParent ID"));
        if (id <= 0) break;
    }
    std::string text;
    for (auto name = names.rbegin(); name != names.rend(); ++name) text = text.empty() ? *name : text + ", " + *name;
    return text;
}

}  // namespace zelvo
