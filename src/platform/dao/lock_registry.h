// Process-wide facts about who holds which book, and how long a write waits
// for a lock before it gives up.
#pragma once

#include <string>

namespace zelvo::dao::detail {

class LockRegistry {
public:
    // Whether a Database of this process holds the file (canonical path)
    // exclusively: then another opener is told who holds it (3356) rather
    // than only that the file is in use (3045).
    static bool HeldExclusivelyHere(const std::string& canonicalPath);
    static void MarkExclusive(const std::string& canonicalPath, bool held);

    // How long a write waits for another holder's lock, in milliseconds.
    static int LockTimeoutMs();
    static void SetLockTimeoutMs(int ms);
};

}  // namespace zelvo::dao::detail
