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

#include "zelvo/data_control.h"
#include "zelvo/enums.h"
#include "zelvo/export.h"
#include "zelvo/listview.h"
#include "zelvo/variant.h"

namespace zelvo {

class ZELVO_EXPORT cAddressbook {
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

    // ---- Project membership. Each opens the book itself; DataProjects and
    // DataPersonal are accepted and not used. Engine errors are passed over
    // (a row the engine refuses stays as it was); the two "not found in the
    // project" cases show a critical message. See projects/membership.h.

    // MoveABObject for a person.
    void MovePerson(std::int32_t Personal_ID, std::string& rProjectTo, ui::DataControl* DataProjects);
    // Rewrites the object's row in rProject (either side, kept) to rProjectTo.
    void MoveABObject(std::int32_t Object_ID, std::int32_t& ObjectType, std::string& rProjectTo,
                      ui::DataControl* DataProjects);
    // Moves the object's row from one project and side to another; a blank
    // rProjectFrom adds a row.
    void MoveABObject2(std::int32_t Object_ID, std::int32_t& ObjectType, std::string& rProjectFrom,
                       bool& InsArcPrjFrom, std::string& rProjectTo, bool& InsArcPrjTo, ui::DataControl* DataProjects);
    // Takes the object's row of rProject on side InsArcPrj away; True only
    // when one went. An empty rProject with type 1 deletes the organization.
    bool DeleteObjfromPrj(ui::DataControl* DataProjects, std::string& rProject, bool& InsArcPrj,
                          std::int32_t Object_ID, std::int32_t ObjectType);
    // Sends the object's row of rProject on side InsArcPrj to the other side.
    void PrjArcPrjSingleProject(std::int32_t Object_ID, std::int32_t ObjectType, ui::DataControl* DataProjects,
                                std::string& rProject, bool& InsArcPrj);
    // PrjArcPrj2 for a person.
    void PrjArcPrj(std::int32_t Personal_ID, ui::DataControl* DataPersonal, ui::DataControl* DataProjects,
                   bool& InsArcPrj);
    // Sends every row of the object to the side opposite InsArcPrj, which
    // comes back as its complement.
    void PrjArcPrj2(std::int32_t Object_ID, std::int32_t ObjectType, ui::DataControl* DataPersonal,
                    ui::DataControl* DataProjects, bool& InsArcPrj);

    // ---- Folder events of the host: the rows of a project and of all its
    // subprojects follow the folder. A missing book makes each do nothing.
    // See projects/folder_events.h.

    // rProjectMoved; DataProjects is not touched. Engine errors are raised.
    void FolderMoved(ui::DataControl* DataProjects, std::string& fromPrj, bool& fromInsArcPrj, std::string& toPrj,
                     bool& toInsArcPrj);
    void rProjectMoved(const std::string& fromPrj, bool fromInsArcPrj, const std::string& toPrj, bool toInsArcPrj);
    // Does nothing at all: the rows stay. A host that wants them gone calls
    // FolderDeleted2 or rProjectDeleted with a Shift other than 0.
    void FolderDeleted(ui::DataControl* DataProjects, ui::DataControl* DataPersProjects,
                       ui::DataControl* DataPersonalFull, std::int16_t Shift = 0);
    // rProjectDeleted with this object's InsArcPrj. Engine errors are raised.
    void FolderDeleted2(ui::DataControl* DataProjects, ui::DataControl* DataPersProjects,
                        ui::DataControl* DataPersonalFull, ui::DataControl* DataEmail, std::string& rProject,
                        std::int16_t Shift = 0);
    // With Shift other than 0, deletes the rows. Engine errors are raised.
    void rProjectDeleted(const std::string& rProject, bool InsArcPrj, std::int16_t Shift);
    // rProjectCopied; nothing is raised or reported beyond what it reports.
    void FolderCopy(ui::DataControl* DataProjectsSrc, ui::DataControl* DataProjects, std::string& rProjectFrom,
                    std::string& rProjectTo, bool& InsArcPrjFrom, bool& InsArcPrjTo);
    // Adds the rows of the copy, none twice; failures are reported.
    void rProjectCopied(const std::string& rProjectFrom, const std::string& rProjectTo, bool InsArcPrjFrom = false,
                        bool InsArcPrjTo = false);

    // Whether the owner (Owner_ID, OwnerType) has at least one resource of
    // kind resType (0 phone, 1 web page, 2 e-mail, 4 ICQ). False when the
    // book cannot be read.
    bool ResourceExists(std::int32_t Owner_ID, std::int32_t OwnerType, std::int32_t resType);

    // Opens the address book window on the object's project and side
    // (NoPrj when rProject is empty, else that project) and returns when the
    // person has closed it. The host's UiHost runs the window. Expects a book
    // already through CorrectDB; a book that cannot be opened shows an
    // empty list and one report.
    void ShowAddressBook();

    // ---- Persons in and out
    // A new person from one address string ("Name <addr>", a bare address,
    // …): the person, the address as the person's e-mail resource, the row
    // of the current project; then the card, and the call returns when the
    // card is closed. A blank string does nothing. The data controls are
    // not used: the call opens the book itself.
    void AddPersonbyStrMail(std::string& strMail, ui::DataControl* DataPersonalFull = nullptr,
                            ui::DataControl* DataProjects = nullptr, ui::DataControl* DataEmail = nullptr);
    // An empty person in the current project, and its card.
    void AddNewPerson();
    // The person and what hangs on the person (resources, project rows,
    // photos; jobs become vacancies). A number not in the book is reported.
    void DeletePerson(std::int32_t Personal_ID, ui::DataControl* DataPersonal = nullptr,
                      ui::DataControl* DataEmail = nullptr, ui::DataControl* DataProjects = nullptr);
    // The card of the person, in the current project; returns when the
    // card is closed.
    void ShowPersProp(std::int32_t Personal_ID);

    // Opens one of the library's windows inside a space of the shell, the
    // window keeping `SpaceID` as its property "Space ID": 3 the address
    // book window. Corrects the book first. Returns when the window is
    // closed; an item number without a window does nothing more.
    void SpaceNavigate(std::int32_t SpaceID, std::int32_t spaceItemNumber = 0);

    // ---- The office side. See organizations/org_model.h.

    // Makes an organization (ObjType Org) or a subdivision (SubDiv) of
    // Parent_ID, asking for its name; files it in rProject on the side
    // InsArcPrj when rProject is not blank. Parent_ID (0 for Org), Icon and
    // Organization_ID are given back. Returns the name as typed, "?" for
    // one left without a name, "" when nothing was made (a blank answer,
    // another ObjType, a book that cannot be opened). DataOrg and
    // DataProjects are accepted and not used.
    std::string AddNewOfficeObject(ui::DataControl* DataOrg, std::int32_t ObjType, std::int32_t& Parent_ID,
                                   std::string& Icon, std::int32_t& Organization_ID, ui::DataControl* DataProjects,
                                   std::string& rProject_, bool& InsArcPrj_);

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
