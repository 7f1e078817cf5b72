// BMP by hand: the file and info headers of every Windows and OS/2 version,
// 1, 4 and 8 bits with a colour table, 16 and 32 bits plain or with bit
// fields, and 24 bits. Run-length compressed bitmaps are refused with a clear
// text; no paint program writes them by default.
#include <bit>
#include <cstring>

#include "platform/imaging/decoders.h"

namespace zelvo::imaging::detail {

namespace {

std::uint32_t U16(Bytes b, std::size_t at) { return std::uint32_t(b[at]) | std::uint32_t(b[at + 1]) << 8; }
std::uint32_t U32(Bytes b, std::size_t at) { return U16(b, at) | U16(b, at + 2) << 16; }

// One channel of a bit-field pixel, widened to 8 bits.
struct Channel {
    std::uint32_t mask = 0;
    int shift = 0;
    int bits = 0;
    explicit Channel(std::uint32_t m = 0) : mask(m) {
        if (m) {
            shift = std::countr_zero(m);
            bits = std::popcount(m);
        }
    }
    std::uint8_t Get(std::uint32_t v) const {
        if (!mask) return 0;
        const std::uint32_t raw = (v & mask) >> shift;
        const std::uint32_t max = bits >= 32 ? 0xFFFFFFFFu : (1u << bits) - 1;
        return std::uint8_t((std::uint64_t(raw) * 255 + max / 2) / max);
    }
};

}  // namespace

bool LooksLikeBmp(Bytes b) { return b.size() >= 2 && b[0] == 'B' && b[1] == 'M'; }

Picture DecodeBmp(Bytes b) {
    if (b.size() < 14 + 12) Fail("BMP: the file ends inside its header");
    const std::uint32_t offBits = U32(b, 10);
    const std::uint32_t hdr = U32(b, 14);
    std::int64_t width = 0, height = 0;
    std::uint32_t bpp = 0, compression = 0, colorsUsed = 0;
    std::size_t paletteAt = 14 + hdr, entrySize = 4;
    if (hdr == 12) {  // OS/2 core header
        width = U16(b, 18);
        height = std::int16_t(U16(b, 20));
        bpp = U16(b, 24);
        entrySize = 3;
    } else if (hdr >= 40 && hdr <= 124) {
        if (b.size() < 14 + std::size_t(hdr)) Fail("BMP: the file ends inside its header");
        width = std::int32_t(U32(b, 18));
        height = std::int32_t(U32(b, 22));
        bpp = U16(b, 28);
        compression = U32(b, 30);
        colorsUsed = U32(b, 46);
    } else {
        Fail("BMP: unknown header size " + std::to_string(hdr));
    }
    const bool topDown = height < 0;
    if (topDown) height = -height;

    // Bit fields: in the header from version 3 on, else right after it.
    std::uint32_t masks[3] = {0, 0, 0};
    if (compression == 3 || compression == 6) {
        if (bpp != 16 && bpp != 32) Fail("BMP: bit fields need 16 or 32 bits");
        std::size_t at = 14 + 40;
        if (hdr == 40) paletteAt += compression == 6 ? 16 : 12;
        if (b.size() < at + 12) Fail("BMP: the file ends inside its bit fields");
        for (int i = 0; i < 3; ++i) masks[i] = U32(b, at + 4 * std::size_t(i));
    } else if (compression == 1 || compression == 2) {
        Fail("BMP: run-length compressed bitmaps are not supported");
    } else if (compression != 0) {
        Fail("BMP: unsupported compression " + std::to_string(compression));
    }
    if (compression == 0 && bpp == 16) masks[0] = 0x7C00, masks[1] = 0x03E0, masks[2] = 0x001F;
    if (compression == 0 && bpp == 32) masks[0] = 0xFF0000, masks[1] = 0xFF00, masks[2] = 0xFF;
    if (bpp != 1 && bpp != 4 && bpp != 8 && bpp != 16 && bpp != 24 && bpp != 32)
        Fail("BMP: " + std::to_string(bpp) + " bits per pixel is not a bitmap depth");

    std::uint8_t palette[256][3] = {};
    if (bpp <= 8) {
        std::uint32_t count = colorsUsed ? colorsUsed : (1u << bpp);
        if (count > 256) count = 256;
        if (paletteAt + std::size_t(count) * entrySize > b.size()) Fail("BMP: the file ends inside its colour table");
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::size_t at = paletteAt + i * entrySize;
            palette[i][0] = b[at + 2], palette[i][1] = b[at + 1], palette[i][2] = b[at];
        }
    }

    Picture pic;
    AllocatePicture(pic, width, height);
    const std::size_t stride = ((std::size_t(width) * bpp + 31) / 32) * 4;
    if (offBits > b.size() || (b.size() - offBits) / stride < std::size_t(height))
        Fail("BMP: the file ends before the last row of pixels");
    const Channel red(masks[0]), green(masks[1]), blue(masks[2]);
    for (std::int64_t y = 0; y < height; ++y) {
        const std::uint8_t* row = b.data() + offBits + stride * std::size_t(topDown ? y : height - 1 - y);
        std::uint8_t* out = pic.Row(int(y));
        for (std::int64_t x = 0; x < width; ++x, out += 3) {
            switch (bpp) {
                case 1: case 4: case 8: {
                    const std::size_t bit = std::size_t(x) * bpp;
                    const unsigned i = (row[bit / 8] >> (8 - bpp - bit % 8)) & ((1u << bpp) - 1);
                    std::memcpy(out, palette[i], 3);
                    break;
                }
                case 24:
                    out[0] = row[3 * x + 2], out[1] = row[3 * x + 1], out[2] = row[3 * x];
                    break;
                default: {
                    const std::uint32_t v = bpp == 16 ? U16(Bytes(row, stride), std::size_t(2 * x))
                                                      : U32(Bytes(row, stride), std::size_t(4 * x));
                    out[0] = red.Get(v), out[1] = green.Get(v), out[2] = blue.Get(v);
                }
            }
        }
    }
    return pic;
}

}  // namespace zelvo::imaging::detail
