#include "photos/cimage.h"

#include <algorithm>
#include <cstring>

#include "photos/area_resample.h"

namespace zelvo {

namespace {

// Maps colours to the nearest entry of a colour table (least squared
// distance, the lower index on a tie), as a device does when it draws a
// colour into a palette bitmap. Recent answers are cached by colour.
class NearestColour {
public:
    NearestColour(const std::array<RgbQuad, 256>& table, int count) : table_(table), count_(count) {
        cache_.fill(Entry{0xFFFFFFFFu, 0});
    }
    std::uint8_t operator()(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
        const std::uint32_t key = std::uint32_t(r) << 16 | std::uint32_t(g) << 8 | b;
        Entry& e = cache_[(key ^ (key >> 9) ^ (key >> 17)) & (cache_.size() - 1)];
        if (e.key == key) return e.index;
        int best = 0, bestDistance = 1 << 30;
        for (int i = 0; i < count_; ++i) {
            const int dr = table_[std::size_t(i)].Red - r, dg = table_[std::size_t(i)].Green - g,
                      db = table_[std::size_t(i)].Blue - b;
            const int d = dr * dr + dg * dg + db * db;
            if (d < bestDistance) bestDistance = d, best = i;
        }
        e = Entry{key, std::uint8_t(best)};
        return e.index;
    }

private:
    struct Entry {
        std::uint32_t key;
        std::uint8_t index;
    };
    const std::array<RgbQuad, 256>& table_;
    int count_;
    std::array<Entry, 4096> cache_;
};

// The most pixel memory an image may take: a picture at the loader's limit.
constexpr std::int64_t kMaxImageBytes = imaging::kMaxPicturePixels * 4;

}  // namespace

int cImage::BytesPerScanLine() const {
    switch (bitCount_) {
        case 1: return ((width_ - 1) / 8 + 4) & ~3;
        case 4: return ((width_ - 1) / 2 + 4) & ~3;
        case 8: return (width_ + 3) & ~3;
        default: return (width_ * 3 + 3) & ~3;
    }
}

void cImage::Release() {
    bits_.clear();
    bits_.shrink_to_fit();
    width_ = height_ = bitCount_ = 0;
    table_.fill(RgbQuad{});
}

bool cImage::Create(int Width, int Height, int BitCount) {
    Release();
    if (BitCount != 1 && BitCount != 4 && BitCount != 8 && BitCount != 24) return false;
    if (Width < 1 || Height < 1 || std::int64_t(Width) * Height > imaging::kMaxPicturePixels) return false;
    width_ = Width;
    height_ = Height;
    bitCount_ = BitCount;
    const std::int64_t bytes = std::int64_t(Height) * BytesPerScanLine();
    if (bytes > kMaxImageBytes) {
        Release();
        return false;
    }
    if (BitCount != 24) {
        const int n = (1 << BitCount) - 1;
        for (int i = 0; i <= n; ++i) {
            const auto v = std::uint8_t((i * 255 + n / 2) / n);  // i * 255 / n, rounded
            table_[std::size_t(i)] = RgbQuad{v, v, v, 0};
        }
    }
    bits_.assign(std::size_t(bytes), 0);
    return true;
}

std::uint32_t cImage::Raw(int x, int y) const {
    const std::uint8_t* row = RowPtr(y);
    switch (bitCount_) {
        case 1: return (row[x >> 3] >> (7 - (x & 7))) & 1;
        case 4: return (row[x >> 1] >> ((x & 1) ? 0 : 4)) & 15;
        case 8: return row[x];
        default: return std::uint32_t(row[3 * x]) | std::uint32_t(row[3 * x + 1]) << 8 | std::uint32_t(row[3 * x + 2]) << 16;
    }
}

void cImage::SetRaw(int x, int y, std::uint32_t v) {
    std::uint8_t* row = RowPtr(y);
    switch (bitCount_) {
        case 1: {
            const int s = 7 - (x & 7);
            row[x >> 3] = std::uint8_t((row[x >> 3] & ~(1 << s)) | ((v & 1) << s));
            break;
        }
        case 4: {
            const int s = (x & 1) ? 0 : 4;
            row[x >> 1] = std::uint8_t((row[x >> 1] & ~(15 << s)) | ((v & 15) << s));
            break;
        }
        case 8: row[x] = std::uint8_t(v); break;
        default:
            row[3 * x] = std::uint8_t(v), row[3 * x + 1] = std::uint8_t(v >> 8), row[3 * x + 2] = std::uint8_t(v >> 16);
    }
}

void cImage::ReadRowRgb(int y, std::uint8_t* rgb) const {
    if (bitCount_ == 24) {
        const std::uint8_t* row = RowPtr(y);
        for (int x = 0; x < width_; ++x) rgb[3 * x] = row[3 * x + 2], rgb[3 * x + 1] = row[3 * x + 1], rgb[3 * x + 2] = row[3 * x];
        return;
    }
    for (int x = 0; x < width_; ++x) {
        const RgbQuad& q = table_[Raw(x, y)];
        rgb[3 * x] = q.Red, rgb[3 * x + 1] = q.Green, rgb[3 * x + 2] = q.Blue;
    }
}

void cImage::WriteRowRgb(int y, const std::uint8_t* rgb) {
    if (bitCount_ == 24) {
        std::uint8_t* row = RowPtr(y);
        for (int x = 0; x < width_; ++x) row[3 * x] = rgb[3 * x + 2], row[3 * x + 1] = rgb[3 * x + 1], row[3 * x + 2] = rgb[3 * x];
        return;
    }
    NearestColour nearest(table_, ColourCount());
    for (int x = 0; x < width_; ++x) SetRaw(x, y, nearest(rgb[3 * x], rgb[3 * x + 1], rgb[3 * x + 2]));
}

bool cImage::CopyStdPicture(const imaging::Picture& Picture, int& BitCount) {
    // A decoded picture is a 24-bit bitmap; a 16-bit one would be widened too.
    if (BitCount == 0 || BitCount == 16) BitCount = 24;
    if (Picture.Empty() || Picture.Pixels.size() < std::size_t(Picture.Width) * std::size_t(Picture.Height) * 3 ||
        !Create(Picture.Width, Picture.Height, BitCount)) {
        Release();
        return false;
    }
    if (BitCount == 24) {
        for (int y = 0; y < height_; ++y) WriteRowRgb(y, Picture.Row(y));
        return true;
    }
    NearestColour nearest(table_, ColourCount());
    for (int y = 0; y < height_; ++y) {
        const std::uint8_t* in = Picture.Row(y);
        for (int x = 0; x < width_; ++x, in += 3) SetRaw(x, y, nearest(in[0], in[1], in[2]));
    }
    return true;
}

void cImage::BltFrom(const cImage& src, int dx, int dy, int sx, int sy, int w, int h) {
    // Clip against both images.
    if (sx < 0) dx -= sx, w += sx, sx = 0;
    if (sy < 0) dy -= sy, h += sy, sy = 0;
    if (dx < 0) sx -= dx, w += dx, dx = 0;
    if (dy < 0) sy -= dy, h += dy, dy = 0;
    w = std::min({w, src.width_ - sx, width_ - dx});
    h = std::min({h, src.height_ - sy, height_ - dy});
    if (w <= 0 || h <= 0) return;
    const bool sameValues = src.bitCount_ == bitCount_ && (bitCount_ == 24 || src.table_ == table_);
    if (sameValues) {
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) SetRaw(dx + x, dy + y, src.Raw(sx + x, sy + y));
        return;
    }
    std::vector<std::uint8_t> rgb(std::size_t(src.width_) * 3);
    NearestColour nearest(table_, ColourCount());
    for (int y = 0; y < h; ++y) {
        src.ReadRowRgb(sy + y, rgb.data());
        for (int x = 0; x < w; ++x) {
            const std::uint8_t* p = &rgb[std::size_t(sx + x) * 3];
            SetRaw(dx + x, dy + y,
                   bitCount_ == 24 ? (std::uint32_t(p[2]) | std::uint32_t(p[1]) << 8 | std::uint32_t(p[0]) << 16)
                                   : nearest(p[0], p[1], p[2]));
        }
    }
}

bool cImage::CopyHDC(Hdc hDC, int Width, int Height, int BitCount, int X, int Y) {
    if (!hDC) return false;
    if (BitCount == 0) {
        const int colours = hDC->ColourCount();
        BitCount = colours >= 1 && colours <= 2 ? 1 : colours >= 3 && colours <= 16 ? 4 : colours >= 17 && colours <= 256 ? 8 : 24;
    }
    const cImage& src = *hDC;  // may be this very object: keep a copy before Create releases it
    std::unique_ptr<cImage> keep;
    const cImage* from = &src;
    if (&src == this) {
        keep = NewLike(width_, height_);
        keep->bits_ = bits_;
        from = keep.get();
    }
    if (!Create(Width, Height, BitCount)) return false;
    if (from->bitCount_ <= 8 && bitCount_ <= 8) CopyPalletHDC(from);
    BltFrom(*from, 0, 0, X, Y, Width, Height);
    return true;
}

bool cImage::CopyPalletHDC(Hdc hDC) {
    if (!hDC || hDC == this || ColourCount() == 0) return false;
    const int read = hDC->ColourCount();
    const int written = std::min(read, ColourCount());
    for (int i = 0; i < written; ++i) table_[std::size_t(i)] = hDC->table_[std::size_t(i)];
    return written > 0 && written == read;
}

void cImage::PaintHDC(cImage* hDC, int X, int Y, std::uint32_t RasterOp) const {
    if (!hDC || !hdc() || !hDC->hdc() || hDC == this) return;
    if (RasterOp == kSrcCopy) {
        hDC->BltFrom(*this, X, Y, 0, 0, width_, height_);
        return;
    }
    // The bitwise operations act on the colour values, as on a true-colour
    // screen: the target's colour and the source's are combined per channel.
    cImage combined;
    if (!combined.Create(width_, height_, 24)) return;
    combined.BltFrom(*hDC, 0, 0, X, Y, width_, height_);
    std::vector<std::uint8_t> s(std::size_t(width_) * 3), d(std::size_t(width_) * 3);
    for (int y = 0; y < height_; ++y) {
        ReadRowRgb(y, s.data());
        combined.ReadRowRgb(y, d.data());
        for (std::size_t i = 0; i < s.size(); ++i) {
            switch (RasterOp) {
                case kSrcPaint: d[i] |= s[i]; break;
                case kSrcAnd: d[i] &= s[i]; break;
                case kSrcInvert: d[i] ^= s[i]; break;
                case kNotSrcCopy: d[i] = std::uint8_t(~s[i]); break;
                default: return;  // an operation we don't know draws nothing
            }
        }
        combined.WriteRowRgb(y, d.data());
    }
    // Only the part that lies on the target goes back; BltFrom clips.
    hDC->BltFrom(combined, X, Y, 0, 0, width_, height_);
}

std::unique_ptr<cImage> cImage::NewLike(int Width, int Height) const {
    auto img = std::make_unique<cImage>();
    if (!img->Create(Width, Height, bitCount_)) return nullptr;
    img->table_ = table_;
    return img;
}

std::unique_ptr<cImage> cImage::Greyscale() const {
    if (!hdc()) return nullptr;
    auto img = std::make_unique<cImage>();
    if (!img->Create(width_, height_, 8)) return nullptr;
    img->BltFrom(*this, 0, 0, 0, 0, width_, height_);
    return img;
}

std::unique_ptr<cImage> cImage::Resample(int Width, int Height) const {
    if (!hdc()) return nullptr;
    auto img = NewLike(Width, Height);
    if (!img) return nullptr;
    if (Width == width_ && Height == height_) {
        img->BltFrom(*this, 0, 0, 0, 0, width_, height_);
        return img;
    }
    // Through RGB, so that a palette image averages colours, not indexes.
    std::vector<std::uint8_t> src(std::size_t(width_) * std::size_t(height_) * 3);
    for (int y = 0; y < height_; ++y) ReadRowRgb(y, &src[std::size_t(y) * std::size_t(width_) * 3]);
    std::vector<std::uint8_t> dst(std::size_t(Width) * std::size_t(Height) * 3);
    AreaResample(RgbView{src.data(), std::ptrdiff_t(width_) * 3, width_, height_}, Width, Height, dst.data(),
                 std::ptrdiff_t(Width) * 3);
    for (int y = 0; y < Height; ++y) img->WriteRowRgb(y, &dst[std::size_t(y) * std::size_t(Width) * 3]);
    return img;
}

std::unique_ptr<cImage> cImage::Mirror(bool Vertical) const {
    if (!hdc()) return nullptr;
    auto img = NewLike(width_, height_);
    if (!img) return nullptr;
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x)
            img->SetRaw(Vertical ? x : width_ - 1 - x, Vertical ? height_ - 1 - y : y, Raw(x, y));
    return img;
}

std::unique_ptr<cImage> cImage::Rotate(int Angle) const {
    int a = Angle % 360;
    if (a < 0) a += 360;
    if ((a != 90 && a != 180 && a != 270) || !hdc()) return nullptr;
    const bool quarter = a != 180;
    auto img = NewLike(quarter ? height_ : width_, quarter ? width_ : height_);
    if (!img) return nullptr;
    // Where the source's corners land: 90 puts its top edge on the left
    // side, bottom up; 270 puts it on the right side, top down.
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            const std::uint32_t v = Raw(x, y);
            if (a == 90) img->SetRaw(y, width_ - 1 - x, v);
            else if (a == 180) img->SetRaw(width_ - 1 - x, height_ - 1 - y, v);
            else img->SetRaw(height_ - 1 - y, x, v);
        }
    return img;
}

}  // namespace zelvo
