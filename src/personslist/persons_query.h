// The texts of the person lists' queries, and the column lists they are
// made from.
//
// Every query is an SQL text built by concatenation in the book's dialect.
// Texts go between double quotes; a double quote inside one is doubled, so a
// project path can never change the meaning of a statement (for a path
// without a quote the text is exactly the one below).
#pragma once

#include <cstdint>
#include <string>

#include "platform/dao/database.h"
#include "zelvo/enums.h"

namespace zelvo {

// AllPersons: each person with at least one membership on the given side
// (live, or the archive when `InsArcPrj`), once however many projects hold
// them. The columns are all of PersonalData, as the book has them now, then
// Projects.[Owner ID], [OwnerType] and InsArcPrj. Reads the column list from
// the book at DatabasePath(); the engine's errors are thrown.
std::string GetAllPersonsQuery(bool InsArcPrj);

// NoPrj: the persons with no membership at all, on either side.
std::string GetNoPrjPersonsQuery();

// CurPrj: the members of exactly `rProject`. InsCurPrj: the members of
// `rProject` or of a project below it ("A" gives "A" and "A\B", never "AB"),
// with paths compared without regard to case. Any other filter is taken as
// CurPrj. One row a membership, on the side `InsArcPrj`.
std::string GetPrjPersonsQuery(const std::string& rProject, bool InsArcPrj, AddrFiltr Filter);

// The condition on Projects.Project that the project queries share: for
// InsCurPrj the project and every project below it (case ignored), for any
// other filter exactly the project. The side is not part of it.
std::string ProjectCondition(const std::string& rProject, AddrFiltr Filter);

// The fields of `Table` in the book `DatabaseName`, in their order, each as
// "[Table].[Field]", joined by ", " and followed by one blank. Opens and
// closes the book; the engine's errors (3024, 3265 …) are thrown.
std::string TableColumnList(const std::string& Table, const std::string& DatabaseName);

// The same list read through a book already open.
std::string TableColumnList(const std::string& Table, const dao::Database& db);

// The resources of kind `ResType` bound to the owner (`Owner_ID`,
// `OwnerType`): all columns of Resources, then ResourcesOwners.[Owner ID]
// and [OwnerType]. The column list comes from the book at DatabasePath().
std::string GetOwnerResourcesQuery(std::int32_t Owner_ID, std::int32_t OwnerType, std::int32_t ResType);
// The same text with the column list of Resources given: for a caller that
// makes the query for many owners in one go and reads the list once.
std::string GetOwnerResourcesQuery(const std::string& ResourceColumns, std::int32_t Owner_ID, std::int32_t OwnerType,
                                   std::int32_t ResType);

// A text between double quotes, a quote inside doubled.
std::string QuoteSqlText(const std::string& text);

}  // namespace zelvo
