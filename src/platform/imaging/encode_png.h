// A picture as a PNG file: what the command line writes when it hands a
// picture to a person (a scaled photo, a picture result), since PNG keeps
// every pixel as it is.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/imaging/picture.h"

namespace zelvo::imaging {

// The PNG bytes of `picture` (8-bit RGB). Throws zelvo::Error 481 for an
// empty picture.
std::vector<std::uint8_t> EncodePng(const Picture& picture);

}  // namespace zelvo::imaging
