// cAddressbook: the address book as the host sees it.
//
// The host creates one, sets the properties that describe its current view,
// and calls members. The object keeps no database and no record set between
// calls: each member that reaches the data opens the book itself and closes
// it before it returns. Each such member first copies the object's AppPath
// into the library-wide AppPath, from which the book's path is made.
//
// What a host must do first: set AppPath, and run CorrectDB("") once before
// Navigate and the lookups, which take today's layout of the book for
// granted.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/core/variant.h"
#include "platform/dao/database.h"
#include "platform/ui/data_control.h"
#include "platform/ui/listview.h"
#include "zelvo/enums.h"

namespace zelvo {

class cAddressbook {
public:
    // Properties: defaults for the calls, set by the host to suit its view.
    std::string rProject;          // the current project's path; "" is no project
    bool InsArcPrj = false;        // rProject lies in the archive of completed projects
    std::int32_t Flags = AllPersons;  // which persons Navigate lists; only NoPrj differs
    std::int32_t Flags2 = ShowPersons | ShowOrg | ShowSubDiv | ShowJobTitles | ShowEmployees;  // 31
    std::string AppPath;           // the folder of the book; "" the program's folder
    std::int32_t tagOffset = 0;    // sub-items of the host's rows ahead of the office objects' columns

    // Corrects the book at `Path` (see CorrectDB of the store); an empty
    // `Path` becomes the book's path, and `Path` is given that value.
    void CorrectDB(std::string& Path);

    // Fills the host's list with the objects of the current view. The host
    // clears the list before. Persons (Flags2 bit ShowPersons): those of no
    // project when Flags is NoPrj, else the members of exactly rProject on
    // the side InsArcPrj, each with the type text in SubItems(1) and the
    // first e-mail address in SubItems(2) when the list has the columns.
    // `DataPersonal` and `DataEmail` are accepted and not used. Failures are
    // reported with the label "zelvo.dll\cAddressbook\Navigate" and end the
    // call; a missing list is one (91).
    void Navigate(ui::ListView* Listview1, ui::DataControl* DataPersonal, ui::DataControl* DataEmail = nullptr,
                  const Variant& Icon = Variant("User"));

    // Compacts the book in place, with a backup (see CompressDB of the store).
    void CompressDB();

    // The path of the book for this object's AppPath.
    std::string GetDatabasename();

    // Opens the address book window on the object's project and side
    // (NoPrj when rProject is empty, else that project) and returns when the
    // person has closed it. The host's UiHost runs the window. Expects a book
    // already through CorrectDB; a book that cannot be opened shows an
    // empty list and one report.
    void ShowAddressBook();

    // Opens one of the library's windows inside a space of the shell, the
    // window keeping `SpaceID` as its property "Space ID": 3 the address
    // book window. Corrects the book first. Returns when the window is
    // closed; an item number without a window does nothing more.
    void SpaceNavigate(std::int32_t SpaceID, std::int32_t spaceItemNumber = 0);

    // Navigate's office objects (organizations and subdivisions: owner type
    // 1; job titles: 2; employees: 4) are listed by the organizations part of
    // the library, which installs this. Returns the previous one.
    using OfficeObjectsNavigator = std::function<void(cAddressbook& book, ui::ListView& list,
                                                      const dao::Database& db, std::int32_t ownerType)>;
    static OfficeObjectsNavigator SetOfficeObjectsNavigator(OfficeObjectsNavigator navigator);

private:
    // Copies AppPath into the library-wide AppPath.
    void EnterCall() const;
};

}  // namespace zelvo
