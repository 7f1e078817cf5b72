// The SQL texts of the project rows (the table Projects: [Owner ID],
// OwnerType, Project, InsArcPrj).
//
// Identities and types go in as decimal numbers, paths between double
// quotes with any double quote inside doubled, so a path typed by a person
// or taken from a folder name never changes what a statement means. For a
// path without a quote each text is exactly the one the book has always
// used; the host's own data controls may be bound to them.
#pragma once

#include <cstdint>
#include <string>

#include "zelvo/enums.h"

namespace zelvo {

// Every column of the rows of one owner (both sides, every project).
std::string OwnerProjectsSQL(std::int32_t id, std::int32_t type);
// OwnerProjectsSQL for a person (type 0).
std::string PersonProjectsSQL(std::int32_t id);
// The four columns of the rows of one owner.
std::string OwnerProjectRowsSQL(std::int32_t id, std::int32_t type);
// The rows of every kind of owner in `path` on the side `InsArcPrj`: with
// InsCurPrj the project and everything below it ("A" takes "A" and "A\B",
// never "AB"; case ignored), with any other filter exactly the project.
std::string ProjectRowsSQL(const std::string& path, bool InsArcPrj, AddrFiltr filter);

}  // namespace zelvo
