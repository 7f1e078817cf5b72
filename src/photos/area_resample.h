// Area-average resampling of 8-bit RGB rows: each output pixel is the mean of
// the source area it covers, with partly covered source pixels weighted by
// the part. This is what a halftone stretch does when it shrinks, and what
// chroma subsampling wants: the mean of the pixels a sample stands for.
// Enlarging gives each output pixel the source pixel under it, blended where
// it straddles two.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelvo {

// A read-only view of 8-bit pixels, 3 bytes each, rows top to bottom. The
// stride may be negative for bottom-up storage. Channel order is the
// caller's; it is kept.
struct RgbView {
    const std::uint8_t* top = nullptr;  // first byte of the top row
    std::ptrdiff_t stride = 0;          // bytes from one row to the one below
    int width = 0;
    int height = 0;
    const std::uint8_t* Row(int y) const { return top + stride * y; }
};

// Resamples `src` to dstWidth x dstHeight into `dst` (top-down, dstStride
// bytes a row; at least dstWidth * 3). Both sizes must be at least 1.
void AreaResample(const RgbView& src, int dstWidth, int dstHeight, std::uint8_t* dst, std::ptrdiff_t dstStride);

// The same over a span of spanWidth x spanHeight source pixels from the top
// left corner, which may reach beyond the source: there its last column and
// row repeat. Chroma subsampling uses it to give every sample exactly the
// pixels a decoder spreads it back over, also where the image ends halfway
// through a sample.
void AreaResample(const RgbView& src, double spanWidth, double spanHeight, int dstWidth, int dstHeight,
                  std::uint8_t* dst, std::ptrdiff_t dstStride);

}  // namespace zelvo
