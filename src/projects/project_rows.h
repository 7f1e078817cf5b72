// The small steps on project rows that the members, the bars and the
// folder events share.
//
// Each runs in the resume-next style of the project routines: a failing
// engine call is passed over (recorded in Err()), and the step gives the
// neutral answer, False or nothing.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dao/database.h"
#include "platform/ui/listview.h"

namespace zelvo {

// Opens the book at DatabasePath() into `db` and the rows of the owner
// (OwnerProjectRowsSQL) into `rs`, and looks for the row of `Project` on the
// side `InsArcPrj` (the path compared as the engine compares texts: case
// ignored). True when there is one; `rs` then stands on it. The caller
// closes both, found or not.
bool FindProjectRow(dao::Database& db, dao::Recordset& rs, const std::string& Project, bool InsArcPrj,
                    std::int32_t Object_ID, std::int32_t ObjectType);

// Sends the row `rs` stands on to the other side: its path becomes
// OtherSide(Project, InsArcPrj), its flag the complement, and `InsArcPrj`
// comes back as the row's new flag. The row is written first; then the
// folder of the new path is made on its side when it is missing, so a
// folder that cannot be made leaves the row across all the same. A row the
// engine refuses to write stays, with `InsArcPrj` unchanged.
void SendRowToOtherSide(dao::Recordset& rs, const std::string& Project, bool& InsArcPrj);

// Whether `rs` (a set of project rows) holds the row of the owner in
// `Project` on the side `InsArcPrj`. An empty or blank project is never
// found, nor anything in an empty set. Moves `rs`.
bool ProjectRowExists(std::int32_t Owner_ID, std::int32_t OwnerType, const std::string& Project, bool InsArcPrj,
                      dao::Recordset& rs);

// The project list of a person: clears `list`, opens the person's rows
// (PersonProjectsSQL) from `db` into `rs` and shows one row each, in the
// order of the record set: the path as text, both icons "Archive" for a
// row of the archive, "Prj" for a live one. `rs` stays open, so that a
// position in the list is a position in it.
void FillLvwProjects(ui::ListView& list, std::int32_t OwnerID, const dao::Database& db, dao::Recordset& rs);

}  // namespace zelvo
