// What the book does when the host moves, deletes or copies a project
// folder: the project rows follow.
//
// A project here is always the path and everything below it on one side
// (ProjectRowsSQL with InsCurPrj), rows of every kind of object alike. Each
// call opens the book at DatabasePath() itself (the caller has set the
// library-wide AppPath) and closes it; when the file is not there the call
// does nothing and reports nothing.
//
// Each is one statement of the engine, so a failure (the book locked by
// another process, a new path longer than the column's 255 characters)
// changes no row at all, and a project of twenty thousand rows moves in one
// pass.
#pragma once

#include <string>

namespace zelvo {

// The rows of `fromPrj` (and below) on side `fromInsArcPrj` get `toPrj` in
// place of the leading `fromPrj` (compared without regard to case, as the
// rows were found) and the side `toInsArcPrj`. "A" to "C" turns "A\B" into
// "C\B" and leaves "AB" and "X\A" alone. Engine errors are thrown.
void rProjectMoved(const std::string& fromPrj, bool fromInsArcPrj, const std::string& toPrj, bool toInsArcPrj);

// With `Shift` other than 0, deletes the rows of `rProject` (and below) on
// side `InsArcPrj`; the objects stay, unsorted when that was their last
// row. With 0, nothing. Engine errors are thrown.
void rProjectDeleted(const std::string& rProject, bool InsArcPrj, int Shift);

// Adds, for every row of `rProjectFrom` (and below) on side `InsArcPrjFrom`,
// the row with `rProjectTo` in place of the leading part on side
// `InsArcPrjTo`, unless the destination held that row before the copy
// began; the source rows stay. Failures are reported with the label
// "ZELVO.DLL\cAddressbook.FolderCopy" and end the call.
void rProjectCopied(const std::string& rProjectFrom, const std::string& rProjectTo, bool InsArcPrjFrom,
                    bool InsArcPrjTo);

}  // namespace zelvo
