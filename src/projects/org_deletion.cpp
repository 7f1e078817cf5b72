#include "projects/org_deletion.h"

#include "platform/core/error.h"

namespace zelvo {

namespace {
OrgDeleter& Installed() {
    static OrgDeleter deleter;
    return deleter;
}
}  // namespace

OrgDeleter SetOrgDeleter(OrgDeleter deleter) {
    OrgDeleter previous = std::move(Installed());
    Installed() = std::move(deleter);
    return previous;
}

bool DeleteOrg(std::int32_t Org_ID) {
    if (!Installed()) throw Error(445, "DeleteOrg is not built yet", "dbZelvo");
    return Installed()(Org_ID);
}

}  // namespace zelvo
