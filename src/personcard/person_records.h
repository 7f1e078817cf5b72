// The person's own row: making an empty one, and removing what hangs on a
// person before the row itself goes.
//
// Every way in and out of PersonalData uses these two: the host's
// AddNewPerson, AddPersonbyStrMail and DeletePerson, and the address book
// window's New and Delete. They open the book themselves (DatabasePath) and
// pass over a failing step, as those callers do: what was written before a
// failure stays.
#pragma once

#include <cstdint>
#include <string>

namespace zelvo {

// Adds an empty person and, when `rProject` is not empty, files it there on
// the side `InsArcPrj` (a Projects row of owner type 0). Returns the new
// [Personal ID], or 0 when the book could not be opened or the row not added.
std::int32_t NewPersonRecord(const std::string& rProject, bool InsArcPrj);

// Removes what hangs on the person `Personal_ID`, but not the person's row,
// which the caller deletes: its resources (DeletePersonResources: a resource
// shared with another owner stays for that owner), its Projects rows of
// owner type 0 and its photos; its Employees rows stay as vacancies
// ([Personal ID] 0). AddressesOwners rows are not touched.
void DeletePersonData(std::int32_t Personal_ID);

}  // namespace zelvo
