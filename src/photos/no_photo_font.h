// The small font the no-photo card is lettered with: Latin, Latin-1 and
// Cyrillic glyphs as 8-bit coverage maps, built into the library so that the
// card looks the same everywhere and needs no font on the machine.
#pragma once

#include <cstddef>

namespace zelvo::detail {

struct NoPhotoGlyph {
    unsigned codePoint;
    int advance;  // pixels to the next glyph's origin
    int left;     // from the origin to the map's left edge
    int top;      // from the base line up to the map's top row
    unsigned width, rows;
    std::size_t offset;  // into kNoPhotoCoverage
};

extern const int kNoPhotoFontAscent;  // base line below the line's top
extern const int kNoPhotoFontHeight;  // from one line to the next
extern const NoPhotoGlyph kNoPhotoGlyphs[];  // sorted by code point
extern const int kNoPhotoGlyphCount;
extern const unsigned char kNoPhotoCoverage[];

}  // namespace zelvo::detail
