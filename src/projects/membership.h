// Putting one object into a project, moving it, sending it to the archive
// and taking it out: the work behind the membership members of
// cAddressbook.
//
// Each opens the book at DatabasePath() and closes it before it returns
// (the caller has set the library-wide AppPath). They run in the resume-
// next style: an engine error (a locked book, a path longer than the
// column's 255 characters, a missing book) is passed over and leaves the
// row as it was. The only messages are the two "not found in the project"
// texts.
#pragma once

#include <cstdint>
#include <string>

namespace zelvo {

// Rewrites the object's row in `rProject` (on either side; the side is
// kept) to the path `rProjectTo`. No such row: message (critical), nothing
// changes.
void MoveABObject(std::int32_t Object_ID, std::int32_t ObjectType, const std::string& rProject,
                  const std::string& rProjectTo);

// Moves the object's row of `rProjectFrom` on side `InsArcPrjFrom` to
// `rProjectTo` on side `InsArcPrjTo`. A blank `rProjectFrom` means the
// object comes from no project: a row is added. A row that is not there:
// message (critical) naming `rProjectShown`, nothing changes.
void MoveABObject2(std::int32_t Object_ID, std::int32_t ObjectType, const std::string& rProjectFrom,
                   bool InsArcPrjFrom, const std::string& rProjectTo, bool InsArcPrjTo,
                   const std::string& rProjectShown);

// Takes the object's row of `rProject` on side `InsArcPrj` away; True only
// when one was deleted. With an empty `rProject` an organization or
// subdivision (type 1) is deleted outright through DeleteOrg, whose result
// is given (and whose "not built yet" error is raised); any other type
// gives False.
bool DeleteObjfromPrj(const std::string& rProject, bool InsArcPrj, std::int32_t Object_ID,
                      std::int32_t ObjectType);

// Sends the object's row of `rProject` on side `InsArcPrj` to the other
// side and makes its folder there. No such row: nothing, no message.
void PrjArcPrjSingleProject(std::int32_t Object_ID, std::int32_t ObjectType, const std::string& rProject,
                            bool InsArcPrj);

// Sends every row of the object to the side opposite `InsArcPrj`, each
// path rewritten by OtherSide from the side `InsArcPrj`, and makes the
// folders there. `InsArcPrj` comes back as its complement.
void PrjArcPrj2(std::int32_t Object_ID, std::int32_t ObjectType, bool& InsArcPrj);

// The text of a "not found in the project" message: %1 the identity, %2
// the project, " vbCrLf " (any case) a line break.
std::string FillNotFoundMessage(std::string text, std::int32_t Object_ID, const std::string& rProject);

}  // namespace zelvo
