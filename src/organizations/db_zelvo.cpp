#include "organizations/db_zelvo.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "organizations/org_sql.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/dao/connection.h"
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

// The values of `column` in the rows of `sql`, in the order read.
std::vector<std::int32_t> IdsOf(const dao::Database& db, const std::string& sql, const char* column) {
    std::vector<std::int32_t> ids;
    dao::Recordset rs = db.OpenRecordset(sql, dao::dbOpenSnapshot);
    for (; !rs.IsEOF(); rs.MoveNext()) ids.push_back(ValueConv::ToLong(rs(column)));
    rs.Close();
    return ids;
}

// `ids` as the texts of "In (...)" lists, a thousand identities at most in
// each, so that no statement grows without bound on a large or damaged book.
std::vector<std::string> InLists(const std::vector<std::int32_t>& ids) {
    constexpr std::size_t kChunk = 1000;
    std::vector<std::string> lists;
    for (std::size_t from = 0; from < ids.size(); from += kChunk) {
        std::string list;
        for (std::size_t i = from; i < std::min(ids.size(), from + kChunk); ++i)
            list += (list.empty() ? "" : ",") + Id(ids[i]);
        lists.push_back(std::move(list));
    }
    return lists;
}

// The hook once for each row a statement is about to delete: the rows of
// `table` that `where` gives, counted only when a hook is set.
void BeforeRowsDeleted(const dao::Database& db, const std::string& table, const std::string& where) {
    if (!FaultHook()) return;
    dao::Recordset rs = db.OpenRecordset("Select Count(*) As N From " + table + " Where " + where + ";", dao::dbOpenSnapshot);
    std::int64_t n = rs.IsEOF() ? 0 : ValueConv::ToLong(rs("N"));
    rs.Close();
    for (std::int64_t i = 0; i < n; ++i) BeforeRowDeleted();
}

void BeforeRowsDeleted(std::size_t n) {
    for (std::size_t i = 0; i < n && FaultHook(); ++i) BeforeRowDeleted();
}

// The engine keeps an index of a column once a query looks a value up in
// it by "=", which the statements by sets below do not: they find their
// rows by these columns with "In". Asking for the indexes here spares them
// reading whole tables on a book where no window has looked these up yet.
void LookUpKeys(const dao::Database& db) {
    static const std::pair<const char*, const char*> keys[] = {
        {"JobTitles", "Organization ID"}, {"Employees", "Job ID"}, {"Employees", "Room ID"},
        {"Rooms", "Organization ID"},     {"Rooms", "rParent ID"}};
    for (const auto& [table, column] : keys) db.connection()->EnsureLookupIndex(table, column);
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
    if (IdsOf(db, "Select [Organization ID] From Organizations Where [Organization ID]=" + Id(Organization_ID) + ";",
              "Organization ID")
            .empty()) {
        // Fixed text of the walk, shown as it always was.
        UniMsgBox("Организация или подразделение не найдены в базе!", ui::vbExclamation);
        return false;
    }
    LookUpKeys(db);
    // The units of the branch, each once, in the order of a walk from the
    // top: a unit, then the branch of each of its subordinate units in turn
    // (the rooms' outcome depends on that order, see DeleteRoomsOfUnits). A
    // unit met again (a [Parent ID] cycle) is passed over; the stack is our
    // own, so a chain of any depth is fine.
    std::vector<std::int32_t> units;
    std::unordered_set<std::int32_t> seen{Organization_ID};
    std::vector<std::int32_t> stack{Organization_ID};
    while (!stack.empty()) {
        std::int32_t unit = stack.back();
        stack.pop_back();
        units.push_back(unit);
        std::vector<std::int32_t> children = IdsLastToFirst(db, OrgChildrenSQL(unit), "Organization ID");
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            if (seen.insert(*child).second) stack.push_back(*child);
    }

    // Then everything of the branch by sets, a statement for each kind of
    // row however many there are: thousands of employees cost a few
    // statements, not a few each. The order of the statements changes
    // nothing in what is left: a resource goes once its last link is gone,
    // whichever owner's link goes last.
    DeleteRoomsOfUnits(units);
    for (const std::string& list : InLists(units)) {
        const std::string jobs = "Select [Job ID] From JobTitles Where [Organization ID] In (" + list + ")";
        const std::string employees = "Select [Employee ID] From Employees Where [Job ID] In (" + jobs + ")";
        DeleteOwnersResourcesIn(db, oOrganization_ID, list);
        DeleteOwnersResourcesIn(db, oJob_ID, jobs);
        DeleteOwnersResourcesIn(db, oEmployees_ID, employees);
        // Every row of the jobs goes, vacancies too.
        const std::string ofJobs = "[Job ID] In (" + jobs + ")", ofUnits = "[Organization ID] In (" + list + ")";
        BeforeRowsDeleted(db, "Employees", ofJobs);
        db.Execute("Delete From Employees Where " + ofJobs + ";");
        BeforeRowsDeleted(db, "JobTitles", ofUnits);
        db.Execute("Delete From JobTitles Where " + ofUnits + ";");
        BeforeRowsDeleted(db, "Organizations", ofUnits);
        db.Execute("Delete From Organizations Where " + ofUnits + ";");
    }
    return true;
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

void dbZelvo::DeleteRoomsOfOrg(std::int32_t Organization_ID) { DeleteRoomsOfUnits({Organization_ID}); }

void dbZelvo::DeleteRoomsOfUnits(const std::vector<std::int32_t>& units) {
    // The rooms of each unit are taken from the last to the first, the
    // units in the order given. A room taken this way goes with its
    // employees moved out, but its phones stay; every room below it that is
    // still there goes too, phones and all. So the phones of a unit's room
    // go only when it lay below a room taken before it. The outcome is
    // worked out here on the tree of rooms, read once, and written by sets.
    std::vector<std::int32_t> listed;
    for (const std::string& list : InLists(units)) {
        // One read for many units: the rooms of each in the order read, then
        // the units' lists one after the other in the order given.
        std::unordered_map<std::int32_t, std::vector<std::int32_t>> ofUnit;
        dao::Recordset rs = db.OpenRecordset(
            "Select [Room ID], [Organization ID] From Rooms Where [Organization ID] In (" + list + ");",
            dao::dbOpenSnapshot);
        for (; !rs.IsEOF(); rs.MoveNext())
            ofUnit[ValueConv::ToLong(rs("Organization ID"))].push_back(ValueConv::ToLong(rs("Room ID")));
        rs.Close();
        for (std::int32_t unit : units) {
            auto rooms = ofUnit.find(unit);
            if (rooms == ofUnit.end()) continue;
            listed.insert(listed.end(), rooms->second.rbegin(), rooms->second.rend());
            ofUnit.erase(rooms);
        }
    }
    if (listed.empty()) return;

    // The rooms below them, a level at a time; a room met again (a cycle)
    // is not read twice.
    std::unordered_map<std::int32_t, std::vector<std::int32_t>> below;
    std::unordered_set<std::int32_t> known(listed.begin(), listed.end());
    for (std::vector<std::int32_t> level = listed; !level.empty();) {
        std::vector<std::int32_t> next;
        for (const std::string& list : InLists(level)) {
            dao::Recordset rs = db.OpenRecordset(
                "Select [Room ID], [rParent ID] From Rooms Where [rParent ID] In (" + list + ");", dao::dbOpenSnapshot);
            for (; !rs.IsEOF(); rs.MoveNext()) {
                std::int32_t room = ValueConv::ToLong(rs("Room ID"));
                below[ValueConv::ToLong(rs("rParent ID"))].push_back(room);
                if (known.insert(room).second) next.push_back(room);
            }
            rs.Close();
        }
        level = std::move(next);
    }

    std::unordered_set<std::int32_t> gone;
    std::vector<std::int32_t> rooms, withPhones;
    for (std::int32_t top : listed) {
        if (!gone.insert(top).second) continue;  // it lay below a room taken before
        rooms.push_back(top);
        std::vector<std::int32_t> stack{top};
        while (!stack.empty()) {
            std::int32_t room = stack.back();
            stack.pop_back();
            auto children = below.find(room);
            if (children == below.end()) continue;
            for (std::int32_t child : children->second)
                if (gone.insert(child).second) {
                    rooms.push_back(child);
                    withPhones.push_back(child);
                    stack.push_back(child);
                }
        }
    }
    for (const std::string& list : InLists(withPhones)) DeleteOwnersResourcesIn(db, oRoom_ID, list);
    BeforeRowsDeleted(rooms.size());
    for (const std::string& list : InLists(rooms)) {
        db.Execute("Update Employees Set [Room ID]=0 Where [Room ID] In (" + list + ");");
        db.Execute("Delete From Rooms Where [Room ID] In (" + list + ");");
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
    db.Execute("Update Employees Set [Room ID]=0 Where [Room ID]=" + Id(Room_ID) + ";");
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
