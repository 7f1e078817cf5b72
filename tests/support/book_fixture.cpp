#include "support/book_fixture.h"

#include <vector>

namespace zelvo::testing {

namespace {

struct Column {
    const char* name;
    int type;
    int size;
    bool zeroLength;
    const char* defaultValue;
};

void MakeTable(const dao::Database& db, const std::string& name, const std::vector<Column>& columns,
               const std::string& counter) {
    dao::TableDef t = db.CreateTableDef(name);
    for (const auto& c : columns) {
        dao::Field f = t.CreateField(c.name, c.type, c.size);
        f.SetAllowZeroLength(c.zeroLength);
        if (c.defaultValue) f.SetDefaultValue(c.defaultValue);
        t.Fields().Append(f);
    }
    db.TableDefs().Append(t);
    if (!counter.empty()) db.Execute("Alter Table [" + name + "] Add Column [" + counter + "] Counter");
}

}  // namespace

void CreateBookSchema(const dao::Database& db) {
    using namespace zelvo::dao;
    MakeTable(db, "PersonalData",
              {{"FirstName", dbText, 50, true, nullptr}, {"MiddleName", dbText, 50, true, nullptr},
               {"SurName", dbText, 50, true, nullptr}, {"FullName", dbText, 255, true, nullptr},
               {"Comments", dbText, 255, true, nullptr}},
              "Personal ID");
    MakeTable(db, "Photo", {{"Personal ID", dbLong, 0, false, nullptr}, {"Photo", dbLongBinary, 0, false, nullptr}},
              "Photo ID");
    MakeTable(db, "Organizations",
              {{"Organization", dbText, 255, false, nullptr}, {"Parent ID", dbLong, 0, false, nullptr},
               {"Comments", dbText, 255, true, nullptr}},
              "Organization ID");
    MakeTable(db, "JobTitles",
              {{"Organization ID", dbLong, 0, false, nullptr}, {"JobTitle", dbText, 255, false, nullptr},
               {"Comments", dbText, 255, true, nullptr}},
              "Job ID");
    MakeTable(db, "Employees",
              {{"Job ID", dbLong, 0, false, nullptr}, {"Personal ID", dbLong, 0, false, nullptr},
               {"Room ID", dbLong, 0, false, nullptr}, {"Comments", dbText, 255, true, nullptr}},
              "Employee ID");
    MakeTable(db, "Rooms",
              {{"Organization ID", dbLong, 0, false, nullptr}, {"RoomName", dbText, 255, false, nullptr},
               {"IsContainer", dbBoolean, 0, false, nullptr}, {"rParent ID", dbLong, 0, false, nullptr}},
              "Room ID");
    MakeTable(db, "PostAddresses",
              {{"PostIndex", dbText, 50, false, nullptr}, {"Address", dbText, 50, false, nullptr},
               {"aParent ID", dbLong, 0, false, nullptr}, {"aType", dbLong, 0, false, nullptr}},
              "Address ID");
    MakeTable(db, "AddressesOwners",
              {{"Address ID", dbLong, 0, false, nullptr}, {"Owner ID", dbLong, 0, false, nullptr},
               {"OwnerType", dbLong, 0, false, "0"}},
              "");
    MakeTable(db, "Resources",
              {{"ResourceString", dbText, 255, false, nullptr}, {"ResourceType", dbLong, 0, false, "0"},
               {"ResourceSubType", dbLong, 0, false, "0"}},
              "Resource ID");
    MakeTable(db, "ResourcesOwners",
              {{"Resource ID", dbLong, 0, false, nullptr}, {"Owner ID", dbLong, 0, false, nullptr},
               {"OwnerType", dbLong, 0, false, nullptr}},
              "");
    MakeTable(db, "Projects",
              {{"Owner ID", dbLong, 0, false, nullptr}, {"OwnerType", dbLong, 0, false, "0"},
               {"Project", dbText, 255, false, nullptr}, {"InsArcPrj", dbBoolean, 0, false, nullptr}},
              "");
    MakeTable(db, "PhoneTypes", {{"typeName", dbText, 50, false, nullptr}}, "type ID");
    db.CreateQueryDef("OrgPrj", "Select * from Projects Where Projects.OwnerType=1;");
    db.CreateQueryDef("PersPrj", "Select * from Projects Where Projects.OwnerType=0;");
}

dao::Database CreateSampleBook(const std::string& path) {
    dao::Database db = dao::Engine().CreateDatabase(path);
    CreateBookSchema(db);
    db.Execute("Insert Into PersonalData (FirstName, MiddleName, SurName, FullName) "
               "Values (\"Иванов\", \"Иван\", \"Иванович\", \"Иванов Иван\")");
    db.Execute("Insert Into PersonalData (FirstName, FullName) Values (\"Smith\", \"Smith\")");
    db.Execute("Insert Into PersonalData (FirstName, MiddleName, SurName) Values (\"Nobody\", \"No\", \"Name\")");
    db.Execute("Insert Into PersonalData (FirstName, FullName) Values (\"Archive\", \"Archive Person\")");
    db.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (1, 0, \"A\", False)");
    db.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (1, 0, \"A\\B\", False)");
    db.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (2, 0, \"AB\", False)");
    db.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (4, 0, \"Old\", True)");
    db.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"ivan@example.org\", 2)");
    db.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"ivanov@work.example\", 2)");
    db.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"smith@example.com\", 2)");
    db.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"+7 495 123-45-67\", 0)");
    db.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (1, 1, 0)");
    db.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (2, 1, 0)");
    db.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (3, 2, 0)");
    db.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (4, 1, 0)");
    return db;
}

}  // namespace zelvo::testing
