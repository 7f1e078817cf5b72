#include "photos/no_photo.h"

#include <algorithm>
#include <vector>

#include "photos/no_photo_font.h"

namespace zelvo {

namespace {

using detail::NoPhotoGlyph;

const NoPhotoGlyph& Glyph(unsigned cp) {
    const NoPhotoGlyph* begin = detail::kNoPhotoGlyphs;
    const NoPhotoGlyph* end = begin + detail::kNoPhotoGlyphCount;
    const NoPhotoGlyph* g =
        std::lower_bound(begin, end, cp, [](const NoPhotoGlyph& a, unsigned c) { return a.codePoint < c; });
    if (g != end && g->codePoint == cp) return *g;
    return Glyph('?');
}

// The code points of a UTF-8 text; a broken sequence counts as '?'.
std::vector<unsigned> CodePoints(const std::string& s) {
    std::vector<unsigned> out;
    for (std::size_t i = 0; i < s.size();) {
        unsigned char c = static_cast<unsigned char>(s[i]);
        int extra = c < 0x80 ? 0 : (c >> 5) == 6 ? 1 : (c >> 4) == 14 ? 2 : (c >> 3) == 30 ? 3 : -1;
        if (extra < 0 || i + extra >= s.size() + (extra == 0 ? 1 : 0)) {
            out.push_back('?');
            ++i;
            continue;
        }
        unsigned cp = extra == 0 ? c : c & (0x3F >> extra);
        bool ok = true;
        for (int k = 1; k <= extra; ++k) {
            unsigned char d = static_cast<unsigned char>(s[i + k]);
            if ((d & 0xC0) != 0x80) ok = false;
            cp = (cp << 6) | (d & 0x3F);
        }
        out.push_back(ok ? cp : '?');
        i += ok ? extra + 1 : 1;
    }
    return out;
}

int Advance(const std::vector<unsigned>& word) {
    int w = 0;
    for (unsigned cp : word) w += Glyph(cp).advance;
    return w;
}

// Lines of at most `width` pixels, broken at blanks; a word wider than a
// line stands on a line of its own.
std::vector<std::vector<unsigned>> WrapLines(const std::vector<unsigned>& text, int width) {
    std::vector<std::vector<unsigned>> lines(1);
    std::vector<unsigned> word;
    auto flushWord = [&] {
        if (word.empty()) return;
        std::vector<unsigned>& line = lines.back();
        std::vector<unsigned> joined = line;
        if (!joined.empty()) joined.push_back(' ');
        joined.insert(joined.end(), word.begin(), word.end());
        if (!line.empty() && Advance(joined) > width) lines.push_back(word);
        else line = std::move(joined);
        word.clear();
    };
    for (unsigned cp : text) {
        if (cp == ' ') flushWord();
        else if (cp == '\n') {
            flushWord();
            lines.emplace_back();
        } else word.push_back(cp);
    }
    flushWord();
    return lines;
}

void DrawGlyph(imaging::Picture& pic, const NoPhotoGlyph& g, int originX, int baseLine) {
    for (unsigned r = 0; r < g.rows; ++r) {
        int y = baseLine - g.top + int(r);
        if (y < 0 || y >= pic.Height) continue;
        for (unsigned c = 0; c < g.width; ++c) {
            int x = originX + g.left + int(c);
            if (x < 0 || x >= pic.Width) continue;
            unsigned cover = detail::kNoPhotoCoverage[g.offset + r * g.width + c];
            std::uint8_t* px = pic.Row(y) + std::size_t(x) * 3;
            // Black ink over what is there, by the glyph's coverage.
            for (int k = 0; k < 3; ++k) px[k] = std::uint8_t(px[k] * (255 - cover) / 255);
        }
    }
}

}  // namespace

std::shared_ptr<imaging::Picture> MakeNoPhotoPicture(const std::string& Text, int Width, int Height) {
    if (Width < 1 || Height < 1 || std::int64_t(Width) * Height > imaging::kMaxPicturePixels) return nullptr;
    auto pic = std::make_shared<imaging::Picture>();
    pic->Width = Width;
    pic->Height = Height;
    pic->Pixels.assign(std::size_t(Width) * std::size_t(Height) * 3, 0xFF);
    auto black = [&](int x, int y) {
        std::uint8_t* px = pic->Row(y) + std::size_t(x) * 3;
        px[0] = px[1] = px[2] = 0;
    };
    for (int x = 0; x < Width; ++x) black(x, 0), black(x, Height - 1);
    for (int y = 0; y < Height; ++y) black(0, y), black(Width - 1, y);

    // The text block is centred; its lines stand flush left within it.
    std::vector<std::vector<unsigned>> lines = WrapLines(CodePoints(Text), Width);
    int blockWidth = 0;
    for (const auto& line : lines) blockWidth = std::max(blockWidth, Advance(line));
    const int blockHeight = int(lines.size()) * detail::kNoPhotoFontHeight;
    const int left = (Width - blockWidth) / 2;
    int top = (Height - blockHeight) / 2;
    for (const auto& line : lines) {
        int x = left;
        for (unsigned cp : line) {
            const NoPhotoGlyph& g = Glyph(cp);
            DrawGlyph(*pic, g, x, top + detail::kNoPhotoFontAscent);
            x += g.advance;
        }
        top += detail::kNoPhotoFontHeight;
    }
    return pic;
}

}  // namespace zelvo
