#include "platform/dao/lock_registry.h"

#include <set>

namespace zelvo::dao::detail {

namespace {
std::set<std::string>& ExclusivePaths() {
    static std::set<std::string> paths;
    return paths;
}
int lockTimeoutMs = 2000;
}  // namespace

bool LockRegistry::HeldExclusivelyHere(const std::string& p) { return ExclusivePaths().count(p) != 0; }

void LockRegistry::MarkExclusive(const std::string& p, bool held) {
    if (held) ExclusivePaths().insert(p);
    else ExclusivePaths().erase(p);
}

int LockRegistry::LockTimeoutMs() { return lockTimeoutMs; }
void LockRegistry::SetLockTimeoutMs(int ms) { lockTimeoutMs = ms < 0 ? 0 : ms; }

}  // namespace zelvo::dao::detail
