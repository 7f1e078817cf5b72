#include "platform/vcard/vcard_index.h"

#include "platform/core/error.h"

namespace zelvo::vcard {

std::size_t CheckedIndex(long i, std::size_t size, const char* source) {
    if (i < 1 || static_cast<std::size_t>(i) > size) {
        throw Error(9, "Subscript out of range", source);
    }
    return static_cast<std::size_t>(i - 1);
}

void CheckAddPosition(long i, const char* source) {
    if (i < 1) throw Error(5, "Invalid procedure call or argument", source);
}

}  // namespace zelvo::vcard
