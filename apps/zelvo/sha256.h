// SHA-256, for naming a picture's pixels in the command line's JSON: two
// runs that give the same picture print the same hash.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace zelvo::cli {

// The digest of `data` as 64 lower-case hex digits.
std::string Sha256Hex(std::span<const std::uint8_t> data);

}  // namespace zelvo::cli
