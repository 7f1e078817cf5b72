// The office side joins the calls that reach it from elsewhere: the
// deletion of an organization taken out of no project, and Navigate's rows
// of organizations, job titles and employees.
#pragma once

namespace zelvo {

// Installs the organizations' deleter and Navigate's office-objects
// navigator where none is installed yet (a test's own stays). Cheap; every
// call of cAddressbook makes it.
void InstallOfficeSide();

}  // namespace zelvo
