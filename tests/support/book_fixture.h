// A small address book of today's layout, made through the engine as the
// book's own code makes it: tables by TableDef and CreateField, the Counter
// of each by "Alter Table … Add Column … Counter", the two saved queries.
#pragma once

#include <string>

#include "platform/dao/dbengine.h"

namespace zelvo::testing {

// Makes the twelve tables and two saved queries in `db`, empty.
void CreateBookSchema(const dao::Database& db);

// Creates a book at `path` with the schema and a few rows of every kind:
//   persons 1 "Иванов Иван" (projects "A", "A\B"), 2 "Smith" (project "AB"),
//   3 with no FullName (no project), 4 "Archive Person" (archived "Old");
//   e-mail resources for persons 1 (two) and 2 (one); a phone for person 1.
dao::Database CreateSampleBook(const std::string& path);

}  // namespace zelvo::testing
