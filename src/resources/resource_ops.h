// Writing an owner's resources: adding one, editing its text in a list,
// removing it from an owner, and asking whether an owner has one.
//
// Rows of Resources are shared: the vCard import binds an existing row to a
// second owner, so one text can have several link rows. Two rules follow,
// and every writer keeps them:
//  - an edit changes the text for every owner, since it is made on the row;
//  - a removal takes one link, and the row only with its last link.
//
// `RsResources` and `RsOwners` are record sets over the whole tables
// Resources and ResourcesOwners (or any record sets of their rows), opened by
// the window that calls. Like the windows' own routines these pass over a
// failing step and go on: no call here throws, and what was written before a
// failure stays (the two tables are written by separate updates).
#pragma once

#include <cstdint>
#include <string>

#include "platform/dao/database.h"
#include "platform/dao/recordset.h"

namespace zelvo {

// Adds a resource of kind `ResType` with the text `Text` for the owner
// (`OwnerID`, `OwnerType`): always a new row of Resources, and one link.
// The text is stored as typed; a text that is empty after trimming writes
// nothing. Both record sets are re-queried afterwards. Returns the new
// [Resource ID] (read while the row is being added, when the Counter is
// numbered), or 0 when nothing was written.
std::int32_t AddResource(dao::Recordset& RsResources, dao::Recordset& RsOwners, const std::string& Text,
                         std::int32_t ResType, std::int32_t OwnerID, std::int32_t OwnerType);

// The in-place edit of a resource list's label (AfterLabelEdit). `RsList` is
// the list's record set, its current record the row the edit is on. A text
// that is empty after trimming sets `Cancel` (the list keeps the old text)
// and writes nothing; otherwise the row is found in `RsResources` and its
// text becomes `NewString`. The list record set is not re-queried.
void ResourceAfterLabelEdit(dao::Recordset& RsList, dao::Recordset& RsResources, bool& Cancel,
                            const std::string& NewString);

// Removes the link of the owner to the resource, and the resource's row when
// that was its last link (RsResources is then re-queried). A link that is
// not there is told to the person ("Resource was not found in database!")
// and 0 is returned; 1 when the link was removed.
int DeleteRes2(dao::Recordset& RsResources, dao::Recordset& RsOwners, std::int32_t ResourceID, std::int32_t OwnerID,
               std::int32_t OwnerType);

// Removes the row `ResourceID` from `RsResources`, whatever links it has. A
// row that is not there is told to the person.
void DeleteResByID(std::int32_t ResourceID, dao::Recordset& RsResources);

// DeleteRes2 for every link of an owner, when the owner goes. False for
// OwnerID 0 (nobody), true otherwise.
bool DeleteOwnerResources(std::int32_t OwnerID, std::int32_t OwnerType, dao::Recordset& RsResources);

// DeleteOwnerResources for a caller that deletes many owners in one
// transaction of `db`: the owner's links go in one statement, then each of
// their resources no other owner still links to, all written and read
// through `db`. Nothing is told to the person; engine errors go on to the
// caller. False for OwnerID 0, true otherwise.
bool DeleteOwnerResourcesIn(const dao::Database& db, std::int32_t OwnerID, std::int32_t OwnerType);

// The same for every owner of type `OwnerType` whose identity is among
// `OwnerIDs`, the text inside "In (...)": numbers separated by commas, or a
// Select of one column. Their links go in one statement, whatever their
// number, then the resources no other owner still links to.
void DeleteOwnersResourcesIn(const dao::Database& db, std::int32_t OwnerType, const std::string& OwnerIDs);

// Removes every link of a person, those with a Null [OwnerType] included,
// and then each of their resources that no other owner still links to. A
// resource the person shared with another owner stays. The writes are one
// transaction: a failure leaves every link and row as it was. False for 0
// or when the book cannot be opened.
bool DeletePersonResources(std::int32_t PersonalID);

// DeletePersonResources for a caller that deletes the person in one
// transaction of `db`: written and read through `db`, nothing told to the
// person, engine errors go on to the caller. False for 0, true otherwise.
bool DeletePersonResourcesIn(const dao::Database& db, std::int32_t PersonalID);

// Whether the owner has at least one resource of kind `ResType`. Opens the
// book itself, so it sees what was just written through another database.
bool OwnerHasResource(std::int32_t OwnerID, std::int32_t OwnerType, std::int32_t ResType);

// Makes the row `ResourceID` current in `RsResources`. False when there is
// no such row or the record set is empty.
bool FindResource(std::int32_t ResourceID, dao::Recordset& RsResources);

}  // namespace zelvo
