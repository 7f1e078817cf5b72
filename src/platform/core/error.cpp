#include "platform/core/error.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace zelvo {

ErrObject& Err() {
    thread_local ErrObject err;
    return err;
}

bool TraceEnabled() {
    static const bool enabled = [] {
        const char* v = std::getenv("ZELVO_TRACE");
        return v != nullptr && std::strcmp(v, "1") == 0;
    }();
    return enabled;
}

void RecordSwallowed(const Error& e, const char* where) {
    Err().Set(e);
    if (TraceEnabled()) {
        std::fprintf(stderr, "zelvo: resumed after error %d in %s: %s%s%s\n", e.number(),
                     where ? where : "?", e.description().c_str(),
                     e.source().empty() ? "" : " (source: ", e.source().empty() ? "" : (e.source() + ")").c_str());
    }
}

}  // namespace zelvo
