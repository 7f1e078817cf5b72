// The office objects of a project in the host's own list: the rows that
// Navigate adds beside the persons for organizations and subdivisions,
// job titles and employees filed in the current project.
//
// A row carries what the host needs to name the object without another
// query: its icon key ("Org", "SubDiv", "JobTitle", "Employee") gives the
// owner type, its Tag the identity; SubItems(1) is the group text (one
// blank ahead, so that a sort on that column brings each kind together),
// SubItems(2) the first e-mail address when the list has that column. Job
// titles keep their unit in the Tag of sub-item tagOffset + 1; employees
// their person, job and unit in the Tags of tagOffset + 1, + 2, + 3.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dao/database.h"
#include "platform/ui/listview.h"

namespace zelvo {

// Adds, at the end of `Listview`, a row for each object of owner type
// `ObjectType` (1 units, 2 job titles, 4 employees) filed exactly in
// `rProject` on the side `InsArcPrj`, read through `db`, from the last
// record to the first. With an empty project and type 1: the top-level
// organizations filed nowhere. Subdivisions only with ShowSubDiv in
// `Flags2`. A vacancy and an object whose row is gone show nothing.
//
// Nothing is added when the list has no image list (Icons for View 0,
// else SmallIcons) or the list lacks the image of a key needed. The list
// is neither cleared, nor sorted, nor fitted. A failing step is passed
// over; what was added stays.
void NavigateABObjectsInsPrj(std::int32_t ObjectType, ui::ListView& Listview, const std::string& rProject,
                             bool InsArcPrj, std::int32_t Flags2, std::int32_t tagOffset, const dao::Database& db);

}  // namespace zelvo
