// The SQL texts of the office side: the tree of units, the job titles of a
// unit, the employees of a job or a room, the jobs of a person, the rooms
// of one level. Each builder gives one statement; identities are written as
// decimal numbers, and the texts are exactly those the windows and the
// record sets of the organization side open.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dao/database.h"

namespace zelvo {

// The units whose parent is `id`; for 0 also those whose parent is Null,
// so that the organizations are the children of the invisible root 0.
std::string OrgChildrenSQL(std::int32_t id);

// The job titles of the unit `id` (the unit itself, not the organization at
// the top); for 0 also those with no unit.
std::string JobTitlesOfOrgSQL(std::int32_t id);

// Every employee row of the job `id`, vacancies ([Personal ID] 0) included.
std::string EmployeesOfJobSQL(std::int32_t id);

// The employees of the job `id` joined with their persons: all columns of
// both tables, qualified, read from `db`. A vacancy has no person and is
// not in it.
std::string EmployeesPersonsOfJobSQL(std::int32_t id, const dao::Database& db);

// The same for the employees placed in the room `id`.
std::string EmployeesPersonsOfRoomSQL(std::int32_t id, const dao::Database& db);

// The jobs of the person `id`: one row for each employee row of the person
// that names a job, with the job title and its unit. For 0 or less, the
// rows of the persons with identity 0 or Null (none in a sound book).
std::string SqlPersonJobs(std::int32_t id);

// The rooms and containers of the organization `OrganizationID` directly
// under `rParent_ID`; for 0 those at the top, whose parent is 0 or Null.
std::string RoomsOfLevelSQL(std::int32_t OrganizationID, std::int32_t rParent_ID);

// The units, job titles and employees filed in the project `rProject` on
// the side `InsArcPrj`, exactly on that path. With an empty project,
// OrgsInProjectSQL gives the top-level organizations of no project.
std::string OrgsInProjectSQL(const std::string& rProject, bool InsArcPrj, const dao::Database& db);
std::string JobTitlesInProjectSQL(const std::string& rProject, bool InsArcPrj, const dao::Database& db);
std::string EmployeesInProjectSQL(const std::string& rProject, bool InsArcPrj, const dao::Database& db);

}  // namespace zelvo
