// The number of the zelvo::Error that a piece of code throws, for tests
// that check which error a wrong call gets.
#pragma once

#include <functional>

#include "platform/core/error.h"

namespace zelvo::testing {

// The number of the Error `f` throws; 0 when it throws none.
inline int ErrorNumberOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const Error& e) {
        return e.number();
    }
    return 0;
}

}  // namespace zelvo::testing
