// The public enumerations of the address book, with the values the host
// passes and reads.
#pragma once

namespace zelvo {

// The owner code of the link tables (ResourcesOwners, AddressesOwners,
// Projects) and of every OwnerType, ObjectType and ObjType argument. The
// values look like bits but are never combined; there is no 3.
enum PhoneOwnerType : int {
    oPersonal_ID = 0,      // a person (PersonalData)
    oOrganization_ID = 1,  // an organization or subdivision (Organizations)
    oJob_ID = 2,           // a job title (JobTitles)
    oEmployees_ID = 4,     // an employee (Employees)
    oAddress_ID = 8,       // a postal address node (PostAddresses)
    oRoom_ID = 16,         // a room or container (Rooms)
};

// The kinds of resource, the values of [ResourceType].
enum ResourceType : int {
    rsPhone = 0,
    rsWebPage = 1,
    RsEmail = 2,
    rsICQ = 4,
};

// Which persons a list shows.
enum AddrFiltr : int {
    AllPersons = 0,           // persons with a membership on the given side (live or archive)
    NoPrj = 1,                // persons with no membership at all ("unsorted")
    CurPrj = 2,               // members of exactly the given project
    InsCurPrj = 4,            // members of the project or of a project below it
    HideWithoutEmail = 1024,  // a flag bit that no list tests
};

// Which kinds of object Navigate lists: a bit set.
enum Filtr2 : int {
    ShowPersons = 1,
    ShowOrg = 2,         // organizations: rows with no parent
    ShowSubDiv = 4,      // subdivisions: rows with a parent
    ShowJobTitles = 8,
    ShowEmployees = 16,
};

// The kind of object for AddNewOfficeObject.
enum OfficeObject : int {
    Org = 0,
    SubDiv = 1,
    JobTitle = 4,
    employee = 8,
};

}  // namespace zelvo
