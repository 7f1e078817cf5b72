// The picture type: a decoded image as an RGB bitmap.
//
// A picture is what the loader gives and what the bitmap class copies from.
// Pixels are 8-bit R, G, B triples, rows from the top, no padding between
// rows. The picture also keeps the bytes it was decoded from, so that a photo
// can be stored exactly as it came (its own file format, never recoded).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelvo::imaging {

struct Picture {
    int Width = 0;
    int Height = 0;
    std::vector<std::uint8_t> Pixels;     // Width * Height * 3 bytes, R G B, top row first
    std::vector<std::uint8_t> FileBytes;  // the encoded file the pixels came from; may be empty

    bool Empty() const { return Width <= 0 || Height <= 0; }
    const std::uint8_t* Row(int y) const { return Pixels.data() + std::size_t(y) * std::size_t(Width) * 3; }
    std::uint8_t* Row(int y) { return Pixels.data() + std::size_t(y) * std::size_t(Width) * 3; }
};

// The largest picture the loader decodes, in pixels. A header that claims more
// is refused before anything is allocated: a photo of a person never needs it,
// and a damaged or hostile file must not make us reserve gigabytes.
constexpr std::int64_t kMaxPicturePixels = 64LL * 1000 * 1000;

}  // namespace zelvo::imaging
