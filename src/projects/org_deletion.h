// The one way from the projects to the deletion of an organization.
//
// Taking an organization that is in no project "out of no project" deletes
// it, with its whole cascade of subdivisions, job titles, employees and
// rooms. That cascade belongs to the organizations part of the library,
// which installs its deleter here when it is built in; until then the call
// raises error 445 "DeleteOrg is not built yet" to the caller, so that no
// organization is ever half-deleted by a stand-in.
#pragma once

#include <cstdint>
#include <functional>

namespace zelvo {

// Deletes the organization or subdivision `Org_ID` and everything below
// it; True when it was deleted.
using OrgDeleter = std::function<bool(std::int32_t Org_ID)>;

// Installs `deleter`; returns the previous one (empty: none installed).
OrgDeleter SetOrgDeleter(OrgDeleter deleter);

// Runs the installed deleter; raises 445 when there is none.
bool DeleteOrg(std::int32_t Org_ID);

}  // namespace zelvo
