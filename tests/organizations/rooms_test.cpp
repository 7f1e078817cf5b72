// The premises: where a room lies, whose it is, who sits in it.
#include "organizations/rooms.h"

#include "organizations/org_sql.h"
#include "org_book.h"

namespace zelvo::testing {
namespace {

using RoomsTest = OrgBookTest;

TEST_F(RoomsTest, RoomTextAndPathRunFromTheTopDown) {
    std::int32_t acme = Unit("Acme");
    std::int32_t building = Room(acme, "Building", 0, true);
    std::int32_t floor = Room(acme, "Floor 2", building, true);
    std::int32_t office = Room(acme, "Office 7", floor);
    std::int32_t orphan = Room(acme, "Orphan", 9999);
    dbZelvo zelvo;
    EXPECT_EQ(zelvo.GetRoomStringFromID(office), "Building, Floor 2, Office 7");
    EXPECT_EQ(zelvo.GetRoomStringFromID(orphan), "Orphan");
    EXPECT_EQ(zelvo.GetRoomStringFromID(0), "");
    EXPECT_EQ(zelvo.GetRoomStringFromID(4242), "");

    auto rooms = db_.OpenRecordset("Rooms");
    EXPECT_EQ(GetRoomPath(rooms, office), (std::vector<RoomPathEntry>{
                                              {building, "Building"}, {floor, "Floor 2"}, {office, "Office 7"}}));
    EXPECT_EQ(GetRoomPath(rooms, orphan), (std::vector<RoomPathEntry>{{orphan, "Orphan"}}));
    EXPECT_TRUE(GetRoomPath(rooms, 4242).empty());
    EXPECT_TRUE(FindRoom(rooms, floor));
    EXPECT_FALSE(FindRoom(rooms, 4242));

    // A cycle edited into the file ends the walks.
    db_.Execute("Update Rooms Set [rParent ID]=" + N(office) + " Where [Room ID]=" + N(building));
    rooms.Requery();
    EXPECT_EQ(zelvo.GetRoomStringFromID(office), "Building, Floor 2, Office 7");
    EXPECT_EQ(GetRoomPath(rooms, office).size(), 3u);
}

TEST_F(RoomsTest, DeepChainOfRoomsIsWalked) {
    std::int32_t acme = Unit("Acme");
    std::int32_t room = Room(acme, "Top");
    room = Chain("Insert Into Rooms ([Organization ID], RoomName, [rParent ID]) Values (" + N(acme) + ", 'r', ?)", room,
                 10000);
    dbZelvo zelvo;
    std::string text = zelvo.GetRoomStringFromID(room);
    EXPECT_EQ(text.substr(0, 6), "Top, r");
    auto rooms = db_.OpenRecordset("Rooms");
    EXPECT_EQ(GetRoomPath(rooms, room).size(), 10001u);
}

TEST_F(RoomsTest, RoomsBelongToTheTopOrganizationAndNullParentIsTheTop) {
    std::int32_t acme = Unit("Acme");
    std::int32_t sales = Unit("Sales", acme), east = Unit("East", sales);
    auto rooms = db_.OpenRecordset("Rooms");
    std::int32_t hall = AddRoom(rooms, east, 0, "Hall", true);
    ASSERT_GT(hall, 0);
    std::int32_t office = AddRoom(rooms, sales, hall, "Office", false);
    EXPECT_EQ(Ids("Select * From Rooms Where [Organization ID]=" + N(acme), "Room ID"),
              (std::vector<std::int32_t>{hall, office}));
    EXPECT_TRUE(ValueConv::ToBool(db_.OpenRecordset("Select * From Rooms Where [Room ID]=" + N(hall))("IsContainer")));
    EXPECT_EQ(AddRoom(rooms, acme, 0, "  ", false), 0);
    EXPECT_EQ(AddRoom(rooms, 4242, 0, "Nowhere", false), 0);

    db_.Execute("Insert Into Rooms ([Organization ID], RoomName, [rParent ID]) Values (" + N(acme) + ", \"Yard\", Null)");
    EXPECT_EQ(Count(RoomsOfLevelSQL(acme, 0)), 2);
    EXPECT_EQ(Ids(RoomsOfLevelSQL(acme, hall), "Room ID"), std::vector<std::int32_t>{office});
    EXPECT_EQ(Count(RoomsOfLevelSQL(sales, 0)), 0);
}

TEST_F(RoomsTest, EmployeesGoIntoAndOutOfRooms) {
    std::int32_t acme = Unit("Acme");
    std::int32_t hall = Room(acme, "Hall");
    std::int32_t job = Job(acme, "Clerk");
    std::int32_t ann = Employee(job, Person("Ann")), bob = Employee(job, Person("Bob"), hall);
    EXPECT_TRUE(GoToRoom(ann, hall));
    EXPECT_EQ(RoomOf(ann), hall);
    EXPECT_FALSE(GoToRoom(0, hall));
    EXPECT_FALSE(GoToRoom(4242, hall));

    EXPECT_TRUE(dbZelvo().MoveEmployeesFromRoom(hall));
    EXPECT_EQ(RoomOf(ann), 0);
    EXPECT_EQ(RoomOf(bob), 0);
    EXPECT_EQ(Count("Select * From Employees"), 2);
    EXPECT_TRUE(dbZelvo().MoveEmployeesFromRoom(hall));  // nobody left there: still True
}

}  // namespace
}  // namespace zelvo::testing
