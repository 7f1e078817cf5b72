// What deleting a unit, a job title, an employee or a room takes along, and
// what it leaves: every table is looked at afterwards.
#include "organizations/db_zelvo.h"

#include "organizations/org_sql.h"
#include "organizations/rooms.h"
#include "org_book.h"
#include "zelvo/addressbook.h"

namespace zelvo::testing {
namespace {

class DeletionTest : public OrgBookTest {
protected:
    int Messages() {
        int n = 0;
        for (const auto& shown : host_.Log()) n += shown.kind == ui::ScriptedUiHost::Shown::MessageBox;
        return n;
    }
    std::string L(std::int32_t resource, std::int32_t owner, std::int32_t type) {
        return N(resource) + ":" + N(owner) + ":" + N(type);
    }
};

TEST_F(DeletionTest, UnitTakesItsWholeBranchAndLeavesPersonsSharedResourcesAndMemberships) {
    std::int32_t acme = Unit("Acme"), other = Unit("Other");
    std::int32_t sales = Unit("Sales", acme), east = Unit("East", sales);
    std::int32_t ann = Person("Ann"), bob = Person("Bob");
    std::int32_t topJob = Job(acme, "Director"), clerk = Job(sales, "Clerk"), eastJob = Job(east, "Agent");
    std::int32_t otherJob = Job(other, "Guard");
    std::int32_t building = Room(acme, "Building", 0, true);
    std::int32_t office = Room(acme, "Office", building);
    std::int32_t annClerk = Employee(clerk, ann, office);
    Employee(clerk, 0);  // a vacancy
    Employee(eastJob, bob);
    Employee(topJob, ann);
    std::int32_t bobGuard = Employee(otherJob, bob, office);  // sits in Acme's room, works for Other

    std::int32_t sharedPhone = Resource("111", {{acme, oOrganization_ID}, {ann, oPersonal_ID}});
    Resource("acme@example.org", {{acme, oOrganization_ID}}, RsEmail);
    Resource("222", {{sales, oOrganization_ID}});
    Resource("333", {{clerk, oJob_ID}});
    std::int32_t annWork = Resource("ann@acme", {{annClerk, oEmployees_ID}, {ann, oPersonal_ID}}, RsEmail);
    std::int32_t buildingPhone = Resource("444", {{building, oRoom_ID}});
    std::int32_t officePhone = Resource("555", {{office, oRoom_ID}});
    std::int32_t guardPhone = Resource("666", {{bobGuard, oEmployees_ID}});
    ProjectRow(acme, oOrganization_ID, "A");
    ProjectRow(clerk, oJob_ID, "A");
    db_.Execute("Insert Into AddressesOwners ([Owner ID], OwnerType) Values (" + N(acme) + ", 1)");

    EXPECT_TRUE(dbZelvo().DeleteOrg(acme));

    EXPECT_EQ(Ids("Select * From Organizations", "Organization ID"), std::vector<std::int32_t>{other});
    EXPECT_EQ(Ids("Select * From JobTitles", "Job ID"), std::vector<std::int32_t>{otherJob});
    EXPECT_EQ(Ids("Select * From Employees", "Employee ID"), std::vector<std::int32_t>{bobGuard});
    EXPECT_EQ(RoomOf(bobGuard), 0);
    EXPECT_EQ(Count("Select * From Rooms"), 0);
    EXPECT_EQ(Ids("Select * From PersonalData", "Personal ID"), (std::vector<std::int32_t>{ann, bob}));
    // The rooms went with the organization, their phones stayed (as the
    // walk through the organization always left them).
    EXPECT_EQ(Links(), (std::vector<std::string>{L(sharedPhone, ann, 0), L(annWork, ann, 0),
                                                 L(buildingPhone, building, 16), L(officePhone, office, 16),
                                                 L(guardPhone, bobGuard, 4)}));
    EXPECT_EQ(Ids("Select * From Resources", "Resource ID"),
              (std::vector<std::int32_t>{sharedPhone, annWork, buildingPhone, officePhone, guardPhone}));
    EXPECT_EQ(Count("Select * From Projects"), 2);
    EXPECT_EQ(Count("Select * From AddressesOwners"), 1);
    EXPECT_EQ(Messages(), 0);
}

TEST_F(DeletionTest, OrganizationsRoomLyingBelowARoomTakenBeforeItLosesItsPhones) {
    // The walk takes the organization's rooms from the last to the first.
    // Hall comes after Annex, so it goes first, and Annex (edited in below
    // it) goes with it, phones and all; Hall keeps its phone, as the rooms
    // of the organization do. Store (a subdivision's, below Annex) and Shed
    // (Other's, below Hall) go the same way: what lies below a room goes
    // with it, whoever's it is.
    std::int32_t acme = Unit("Acme"), sales = Unit("Sales", acme), other = Unit("Other");
    std::int32_t annex = Room(acme, "Annex"), hall = Room(acme, "Hall");
    db_.Execute("Update Rooms Set [rParent ID]=" + N(hall) + " Where [Room ID]=" + N(annex));
    std::int32_t store = Room(sales, "Store", annex), shed = Room(other, "Shed", hall);
    std::int32_t ann = Person("Ann");
    std::int32_t guard = Employee(Job(other, "Guard"), ann, shed);
    std::int32_t hallPhone = Resource("1", {{hall, oRoom_ID}});
    Resource("2", {{annex, oRoom_ID}});
    Resource("3", {{store, oRoom_ID}});
    Resource("4", {{shed, oRoom_ID}});

    EXPECT_TRUE(dbZelvo().DeleteOrg(acme));
    EXPECT_EQ(Count("Select * From Rooms"), 0);
    EXPECT_EQ(Links(), std::vector<std::string>{L(hallPhone, hall, 16)});
    EXPECT_EQ(Ids("Select * From Resources", "Resource ID"), std::vector<std::int32_t>{hallPhone});
    EXPECT_EQ(RoomOf(guard), 0);
    EXPECT_EQ(Ids("Select * From Organizations", "Organization ID"), std::vector<std::int32_t>{other});
}

TEST_F(DeletionTest, SubdivisionTakesOnlyItsOwnBranch) {
    std::int32_t acme = Unit("Acme");
    std::int32_t sales = Unit("Sales", acme), east = Unit("East", sales), hr = Unit("HR", acme);
    std::int32_t director = Job(acme, "Director"), agent = Job(east, "Agent");
    std::int32_t room = Room(acme, "Hall");
    std::int32_t ann = Person("Ann");
    std::int32_t annDirector = Employee(director, ann, room);
    Employee(agent, ann, room);

    EXPECT_TRUE(dbZelvo().DeleteOrg(sales));
    EXPECT_EQ(Ids("Select * From Organizations", "Organization ID"), (std::vector<std::int32_t>{acme, hr}));
    EXPECT_EQ(Ids("Select * From JobTitles", "Job ID"), std::vector<std::int32_t>{director});
    EXPECT_EQ(Ids("Select * From Employees", "Employee ID"), std::vector<std::int32_t>{annDirector});
    EXPECT_EQ(RoomOf(annDirector), room);  // the organization's rooms are not the subdivision's
    EXPECT_EQ(Count("Select * From Rooms"), 1);
    (void)east;
}

TEST_F(DeletionTest, MissingUnitIsToldAndCycleOrDeepChainEnds) {
    EXPECT_FALSE(dbZelvo().DeleteOrg(4242));
    ASSERT_EQ(Messages(), 1);
    EXPECT_EQ(host_.Log().back().buttons, 48);

    // B and C are each other's parent: both go, once each.
    std::int32_t b = Unit("B", 1);
    std::int32_t c = Unit("C", b);
    db_.Execute("Update Organizations Set [Parent ID]=" + N(c) + " Where [Organization ID]=" + N(b));
    Job(c, "Clerk");
    EXPECT_TRUE(dbZelvo().DeleteOrg(b));
    EXPECT_EQ(Count("Select * From Organizations"), 0);
    EXPECT_EQ(Count("Select * From JobTitles"), 0);
    EXPECT_EQ(Messages(), 1);

    std::int32_t top = Unit("Deep");
    Chain("Insert Into Organizations ([Parent ID]) Values (?)", top, 10000);
    EXPECT_TRUE(dbZelvo().DeleteOrg(top));
    EXPECT_EQ(Count("Select * From Organizations"), 0);
}

TEST_F(DeletionTest, JobTitleTakesAllItsRowsVacanciesTooAndLeavesRoomsAndPersons) {
    std::int32_t acme = Unit("Acme");
    std::int32_t clerk = Job(acme, "Clerk"), guard = Job(acme, "Guard");
    std::int32_t room = Room(acme, "Hall");
    std::int32_t ann = Person("Ann"), bob = Person("Bob");
    std::int32_t annClerk = Employee(clerk, ann, room);
    Employee(clerk, bob);
    Employee(clerk, 0);
    Employee(clerk, 0);
    std::int32_t annGuard = Employee(guard, ann, room);
    Resource("333", {{clerk, oJob_ID}});
    std::int32_t shared = Resource("ann@acme", {{annClerk, oEmployees_ID}, {ann, oPersonal_ID}}, RsEmail);
    ProjectRow(clerk, oJob_ID, "A");

    auto jobs = db_.OpenRecordset(JobTitlesOfOrgSQL(acme));
    dbZelvo zelvo;
    EXPECT_TRUE(zelvo.DeleteJobTitle(clerk, jobs));
    EXPECT_EQ(Ids("Select * From JobTitles", "Job ID"), std::vector<std::int32_t>{guard});
    EXPECT_EQ(Ids("Select * From Employees", "Employee ID"), std::vector<std::int32_t>{annGuard});
    EXPECT_EQ(RoomOf(annGuard), room);
    EXPECT_EQ(Count("Select * From Rooms"), 1);
    EXPECT_EQ(Count("Select * From PersonalData"), 2);
    EXPECT_EQ(Links(), std::vector<std::string>{L(shared, ann, 0)});
    EXPECT_EQ(Count("Select * From Projects"), 1);
    EXPECT_EQ(Count("Select * From JobTitles"), 1);  // the caller's record set was re-queried
    jobs.MoveLast();
    EXPECT_EQ(jobs.RecordCount(), 1);

    EXPECT_FALSE(zelvo.DeleteJobTitle(clerk, jobs));
    ASSERT_EQ(Messages(), 1);
    EXPECT_EQ(host_.Log().back().prompt, "Job title is not found in database!");
    EXPECT_EQ(host_.Log().back().buttons, 16);
}

TEST_F(DeletionTest, EmployeeTakesItsRowAndResourcesOnly) {
    std::int32_t acme = Unit("Acme");
    std::int32_t clerk = Job(acme, "Clerk"), guard = Job(acme, "Guard");
    std::int32_t ann = Person("Ann");
    std::int32_t annClerk = Employee(clerk, ann), annGuard = Employee(guard, ann);
    Resource("ann@acme", {{annClerk, oEmployees_ID}}, RsEmail);
    std::int32_t home = Resource("ann@home", {{ann, oPersonal_ID}}, RsEmail);
    ProjectRow(annClerk, oEmployees_ID, "A");

    dbZelvo zelvo;
    EXPECT_TRUE(zelvo.DeleteEmployee(annClerk, clerk));
    EXPECT_EQ(Ids("Select * From Employees", "Employee ID"), std::vector<std::int32_t>{annGuard});
    EXPECT_EQ(Links(), std::vector<std::string>{L(home, ann, 0)});
    EXPECT_EQ(Count("Select * From Resources"), 1);
    EXPECT_EQ(Count("Select * From JobTitles"), 2);
    EXPECT_EQ(Count("Select * From Projects"), 1);

    // A job with no rows: False, nothing said. A row not in the job: a warning.
    EXPECT_FALSE(zelvo.DeleteEmployee(annClerk, clerk));
    EXPECT_EQ(Messages(), 0);
    EXPECT_FALSE(zelvo.DeleteEmployee(annClerk, guard));
    ASSERT_EQ(Messages(), 1);
    EXPECT_EQ(host_.Log().back().prompt, "The employee is not found in database!");
    EXPECT_EQ(Count("Select * From Employees"), 1);
}

TEST_F(DeletionTest, RoomTakesEverythingBelowWithPhonesAndMovesEmployeesOut) {
    std::int32_t acme = Unit("Acme");
    std::int32_t building = Room(acme, "Building", 0, true);
    std::int32_t floor = Room(acme, "Floor 1", building, true);
    std::int32_t office = Room(acme, "Office", floor);
    std::int32_t hall = Room(acme, "Hall");
    std::int32_t clerk = Job(acme, "Clerk");
    std::int32_t ann = Person("Ann");
    std::int32_t inOffice = Employee(clerk, ann, office), inBuilding = Employee(clerk, ann, building);
    std::int32_t inHall = Employee(clerk, ann, hall);
    std::int32_t shared = Resource("100", {{office, oRoom_ID}, {ann, oPersonal_ID}});
    Resource("200", {{building, oRoom_ID}});
    Resource("300", {{floor, oRoom_ID}});
    std::int32_t hallPhone = Resource("400", {{hall, oRoom_ID}});

    dbZelvo zelvo;
    auto rooms = db_.OpenRecordset("Rooms");
    EXPECT_TRUE(DeleteRoom(zelvo, rooms, building));
    EXPECT_EQ(Ids("Select * From Rooms", "Room ID"), std::vector<std::int32_t>{hall});
    EXPECT_EQ(Links(), (std::vector<std::string>{L(shared, ann, 0), L(hallPhone, hall, 16)}));
    EXPECT_EQ(Ids("Select * From Resources", "Resource ID"), (std::vector<std::int32_t>{shared, hallPhone}));
    EXPECT_EQ(RoomOf(inOffice), 0);
    EXPECT_EQ(RoomOf(inBuilding), 0);
    EXPECT_EQ(RoomOf(inHall), hall);
    EXPECT_EQ(Count("Select * From Employees"), 3);

    EXPECT_FALSE(DeleteRoom(zelvo, rooms, building));
    ASSERT_EQ(Messages(), 1);
    EXPECT_EQ(host_.Log().back().prompt, "Room or container is not found in database!");
    EXPECT_FALSE(zelvo.DeleteChildRooms(0));
    EXPECT_FALSE(zelvo.MoveEmployeesFromRoom(0));
}

TEST_F(DeletionTest, RoomCycleEnds) {
    std::int32_t acme = Unit("Acme");
    std::int32_t a = Room(acme, "A", 1);
    std::int32_t b = Room(acme, "B", a);
    std::int32_t c = Room(acme, "C", b);
    db_.Execute("Update Rooms Set [rParent ID]=" + N(c) + " Where [Room ID]=" + N(a));
    dbZelvo zelvo;
    EXPECT_TRUE(zelvo.DeleteChildRooms(a));
    EXPECT_EQ(Ids("Select * From Rooms", "Room ID"), std::vector<std::int32_t>{a});
}

TEST_F(DeletionTest, OrganizationOfNoProjectIsDeletedWhenTakenOutOfIt) {
    std::int32_t acme = Unit("Acme");
    Job(acme, "Clerk");
    cAddressbook book;
    book.AppPath = AppPath;
    std::string none;
    bool live = false;
    EXPECT_FALSE(book.DeleteObjfromPrj(nullptr, none, live, acme, oJob_ID));
    EXPECT_EQ(Count("Select * From Organizations"), 1);
    EXPECT_TRUE(book.DeleteObjfromPrj(nullptr, none, live, acme, oOrganization_ID));
    EXPECT_EQ(Count("Select * From Organizations"), 0);
    EXPECT_EQ(Count("Select * From JobTitles"), 0);
}

}  // namespace
}  // namespace zelvo::testing
