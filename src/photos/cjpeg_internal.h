// Tables and the block walk shared by the parts of cJpeg. Internal.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "photos/cjpeg.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zelvo::jpeg_detail {

// ZigZag[p]: the place in zigzag order of the natural block position p
// (row * 8 + column), ITU T.81 Figure A.6.
inline constexpr std::array<int, 64> ZigZag = {
    0,  1,  5,  6,  14, 15, 27, 28,  //
    2,  4,  7,  13, 16, 26, 29, 42,  //
    3,  8,  12, 17, 25, 30, 41, 43,  //
    9,  11, 18, 24, 31, 40, 44, 53,  //
    10, 19, 23, 32, 39, 45, 52, 54,  //
    20, 22, 33, 38, 46, 51, 55, 60,  //
    21, 34, 37, 47, 50, 56, 59, 61,  //
    35, 36, 48, 49, 57, 58, 62, 63};

// 1 / (a(k) * sqrt(8)), a(0) = 1, a(k) = sqrt(2) * cos(k * pi / 16): the
// scale the AAN transform leaves in output k, removed by the divisors.
inline constexpr std::array<double, 8> AanScale = {
    0.353553390593273, 0.25489778955208,  0.270598050073098, 0.300672443467523,
    0.353553390593273, 0.449988111568207, 0.653281482438186, 1.28145772387074};

// Bits needed for |v|: 0 for 0, else floor(log2 |v|) + 1.
inline int Category(int v) { return v == 0 ? 0 : 32 - std::countl_zero(std::uint32_t(std::abs(v))); }

// Bit k set when coefficient k (zigzag order) of the block is not zero. The
// coders walk the set bits instead of all 63 AC positions: most are zero.
inline std::uint64_t NonZeroMask(const std::int16_t* block) {
    std::uint64_t mask = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    for (int i = 0; i < 64; i += 16) {
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i));
        const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i + 8));
        const __m128i zeros = _mm_packs_epi16(_mm_cmpeq_epi16(a, zero), _mm_cmpeq_epi16(b, zero));
        mask |= std::uint64_t(~unsigned(_mm_movemask_epi8(zeros)) & 0xFFFFu) << i;
    }
#else
    for (int i = 0; i < 64; ++i) mask |= std::uint64_t(block[i] != 0) << i;
#endif
    return mask;
}

// Walks the AC coefficients of a block (zigzag order) as they are coded:
// zrl() for each 16 zeros of a run above 15, symbol(run * 16 + category,
// value, category) for each value that isn't zero, eob() when zeros are
// left at the end. The statistics and the coder both walk through here, so
// the tables are built for exactly the symbols that are written.
template <class Zrl, class Symbol, class Eob>
void ForEachAcSymbol(const std::int16_t* block, Zrl&& zrl, Symbol&& symbol, Eob&& eob) {
    int last = 0;  // position of the last value that isn't zero
    for (std::uint64_t m = NonZeroMask(block) & ~std::uint64_t(1); m; m &= m - 1) {
        const int k = std::countr_zero(m);
        int run = k - last - 1;
        for (; run > 15; run -= 16) zrl();
        const int v = block[k];
        const int category = Category(v);
        symbol(std::size_t(run * 16 + category), v, category);
        last = k;
    }
    if (last < 63) eob();
}

// The Huffman slot a component codes with: 0 for the first, 1 for the others.
inline int SlotOf(int component) { return component == 0 ? 0 : 1; }

// Builds the optimal table for the symbol counts (ITU T.81 Annex K.2, codes
// limited to 16 bits by Figure K.3, none all ones), checks it and assigns the
// codes. Raises kBadHuffmanTable for a table with no symbol, more than 256
// codes, a symbol twice, or a symbol above symbolLimit.
void MakeOptimalTable(const std::array<std::int64_t, 256>& counts, int symbolLimit, cJpeg::HuffmanTable& table);

// Visits the blocks of one scan in the order they are coded:
// visit(component index, block or nullptr for a dummy block).
//
// One component: its blocks in plane order. Several: MCU by MCU, in each the
// components in order and each component's V rows of H blocks. Blocks that
// an MCU at the right or bottom edge holds beyond the plane are dummies.
template <class Visit>
void WalkScan(const std::vector<cJpeg::Component>& comps, const std::vector<int>& group, int width, int height,
              int hMax, int vMax, Visit&& visit) {
    if (group.size() == 1) {
        const cJpeg::Component& c = comps[std::size_t(group[0])];
        const std::size_t n = c.Data.size() / 64;
        for (std::size_t i = 0; i < n; ++i) visit(group[0], &c.Data[i * 64]);
        return;
    }
    const int mcuCols = (width + 8 * hMax - 1) / (8 * hMax);
    const int mcuRows = (height + 8 * vMax - 1) / (8 * vMax);
    struct Cursor {
        std::array<std::size_t, 4> at{};
        std::size_t total = 0;
        int rest = 0;
    };
    std::array<Cursor, 4> cur{};
    for (std::size_t g = 0; g < group.size(); ++g) {
        const cJpeg::Component& c = comps[std::size_t(group[g])];
        const int b = c.BlocksPerRow;
        cur[g].total = c.Data.size() / 64;
        cur[g].rest = b % c.H ? b % c.H : c.H;
        for (int v = 0; v < c.V; ++v) cur[g].at[std::size_t(v)] = std::size_t(v) * std::size_t(b);
    }
    for (int my = 0; my < mcuRows; ++my) {
        for (int mx = 0; mx < mcuCols; ++mx) {
            const bool lastCol = mx == mcuCols - 1;
            for (std::size_t g = 0; g < group.size(); ++g) {
                const cJpeg::Component& c = comps[std::size_t(group[g])];
                Cursor& k = cur[g];
                for (int v = 0; v < c.V; ++v) {
                    std::size_t& at = k.at[std::size_t(v)];
                    for (int h = 0; h < c.H; ++h) {
                        if ((lastCol && h >= k.rest) || at >= k.total) {
                            visit(group[g], nullptr);
                        } else {
                            visit(group[g], &c.Data[at * 64]);
                            ++at;
                        }
                    }
                }
            }
        }
        for (std::size_t g = 0; g < group.size(); ++g) {
            const cJpeg::Component& c = comps[std::size_t(group[g])];
            for (int v = 0; v < c.V; ++v) cur[g].at[std::size_t(v)] += std::size_t(c.V - 1) * std::size_t(c.BlocksPerRow);
        }
    }
}

}  // namespace zelvo::jpeg_detail
