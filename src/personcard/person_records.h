// The person's own row: making an empty one, and removing what hangs on a
// person before the row itself goes.
//
// Every way in and out of PersonalData uses these two: the host's
// AddNewPerson, AddPersonbyStrMail and DeletePerson, and the address book
// window's New and Delete. They open the book themselves (DatabasePath),
// raise nothing, and write each call as one transaction: a call that fails
// on the way leaves the book as it was, so no person is left half made or
// half removed.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dao/database.h"

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

// DeletePersonData for a caller that deletes the person's row in the same
// transaction of `db`: everything is written through `db`, and an engine
// error goes on to the caller, whose transaction then keeps nothing.
void DeletePersonDataIn(const dao::Database& db, std::int32_t Personal_ID);

}  // namespace zelvo
