// Positions from 1, as the component's callers count them.
#pragma once

#include <cstddef>

namespace zelvo::vcard {

// Turns position `i` (from 1) of a list of `size` items into an index from 0.
// Throws zelvo::Error 9 ("Subscript out of range") with `source` outside
// 1..size, so a caller's off-by-one is an error and never a read past the end.
std::size_t CheckedIndex(long i, std::size_t size, const char* source);

// Checks the position given to an `Add`: it must be 1 or more. Throws
// zelvo::Error 5 ("Invalid procedure call or argument") otherwise.
void CheckAddPosition(long i, const char* source);

}  // namespace zelvo::vcard
