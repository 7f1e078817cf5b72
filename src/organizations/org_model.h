// The tree of units as the library reads and grows it: making a unit,
// the path text of a unit, the unit of a job, the job of an employee, the
// captions of objects that have no name, and the rows a new job title and
// a new employee write.
//
// The tree: a row of Organizations whose [Parent ID] is 0 or Null is an
// organization, any other row a subdivision, to any depth. A job title
// hangs on one unit of any level; an employee row joins one job, one
// person (0 for a vacancy) and optionally one room.
//
// Like the windows that call them, these pass over a failing engine step
// and show nothing; a row that is not there gives 0 or leaves the out
// arguments as they were. None of them throws.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dao/recordset.h"

namespace zelvo {

// The text a name prompt starts with; left as it is, it means "no name".
inline constexpr const char* kNoNameAnswer = "?";

// Makes an organization (ObjType Org) or a subdivision (SubDiv) of
// `Parent_ID`, asking the person for its name.
//  - Any other ObjType: returns "" at once, asks nothing.
//  - `Icon` becomes "Org" or "SubDiv"; for Org, `Parent_ID` becomes 0 (a
//    new organization is always at the root), whatever the answer.
//  - An answer that is empty after trimming (cancelled, blanks): nothing is
//    written, the result is "".
//  - Else a row of `rsOrganizations` with the answer as typed (untrimmed) as
//    its name, or a Null name for "?", and `Parent_ID` as its parent;
//    `Organization_ID` becomes its identity and the result is the answer.
//    When the engine refuses the row (a name longer than the column),
//    nothing is written and `Organization_ID` keeps its value; the result
//    is still the answer.
//  - When the row was written, `rsProjects` is given and `rProject` is not
//    blank, the new unit is filed in that project on the side `InsArcPrj`.
std::string NewOrg(dao::Recordset& rsOrganizations, std::int32_t ObjType, std::int32_t& Parent_ID, std::string& Icon,
                   std::int32_t& Organization_ID, dao::Recordset* rsProjects, const std::string& rProject,
                   bool InsArcPrj);

// The path text of the unit `OrganizationID`, read from `rsOrganizations`
// (a record set over Organizations; its position moves). Walks up from the
// unit: each named subdivision on the way is put in front of
// `SubDivisions` (", " between names; a unit whose trimmed name is empty
// adds nothing); the row with no parent gives `OrgName` and
// `TopOrganizationID`. A missing parent ends the walk with what was
// gathered, `OrgName` and `TopOrganizationID` untouched. So does a unit met
// a second time (a [Parent ID] cycle in a damaged book). Unit 0 or an empty
// record set: nothing changes. `SubDivisions` is cleared at the start
// otherwise.
void GetOrgPath(std::int32_t OrganizationID, dao::Recordset& rsOrganizations, std::string& SubDivisions,
                std::string& OrgName, std::int32_t& TopOrganizationID);

// The unit of the job title `JobID`; 0 when there is no such job title (or
// the book cannot be opened). Opens the book itself.
std::int32_t FindOrgOfJob(std::int32_t JobID);

// The job of the employee row `EmployeeID`, with its room and person in the
// two out arguments; 0 and the out arguments untouched when there is no
// such row. Opens the book itself.
std::int32_t FindJobOfEmployee(std::int32_t EmployeeID, std::int32_t& RoomID, std::int32_t& PersonalID);

// Captions of the organization window. `UnitName` is the current unit's
// name ("" when it has none).
std::string UnitCaption(const std::string& UnitName);          // the name, or "Organization with no name"
std::string RootCaption();                                      // "Organizations"
std::string JobTitleCaption(const std::string& JobTitle, const std::string& UnitName);
std::string EmployeeCaption(const std::string& FullName, const std::string& UnitName);

// Adds a job title named `Answer` ("?" leaves it without a name) to the
// unit `OrganizationID` through `rsJobTitles`, which is re-queried. A blank
// answer writes nothing. Returns the new [Job ID], 0 when nothing was
// written (also when the engine refused the row: no half row stays).
std::int32_t AddJobTitle(dao::Recordset& rsJobTitles, std::int32_t OrganizationID, const std::string& Answer);

// Puts the person `PersonalID` into the job `JobID`: a new row of
// Employees with no room, written through the book opened anew. Returns
// the new [Employee ID], 0 when nothing was written.
std::int32_t AddEmployee(std::int32_t JobID, std::int32_t PersonalID);

// Makes a blank person (one empty row of PersonalData, filed in no
// project) and puts it into the job `JobID`. Returns the new person's
// identity, 0 when nothing was written; `EmployeeID` gets the new row's.
std::int32_t AddNewPersonAsEmployee(std::int32_t JobID, std::int32_t& EmployeeID);

}  // namespace zelvo
