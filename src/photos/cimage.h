// cImage: one device-independent bitmap and the surface to draw it on.
//
// The JPEG encoder samples from a cImage: PictureToJpeg copies a picture in
// with CopyStdPicture and hands the image's `hdc` to cJpeg::SampleHDC. The
// other operations (grey, resample, mirror, rotate, copies between images)
// are offered to any caller.
//
// The layout is that of a Windows DIB, because callers may read the pixel
// memory directly: rows bottom-up, each padded to four bytes
// (BytesPerScanLine), 24-bit pixels as B G R, 1/4/8-bit pixels as indexes
// into a colour table of 256 entries (a grey ramp unless a palette was
// copied in). Where the original drew through a device context, the image
// itself stands in for it: `hdc()` is the image when it holds one, else null.
//
// No operation throws for bad arguments; they answer false or null.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/imaging/picture.h"

namespace zelvo {

class cImage;

// The stand-in for a device context handle: the image, or null for none.
using Hdc = const cImage*;

// Raster operations PaintHDC knows (the values of the Win32 constants).
constexpr std::uint32_t kSrcCopy = 0x00CC0020;
constexpr std::uint32_t kSrcPaint = 0x00EE0086;
constexpr std::uint32_t kSrcAnd = 0x008800C6;
constexpr std::uint32_t kSrcInvert = 0x00660046;
constexpr std::uint32_t kNotSrcCopy = 0x00330008;

struct RgbQuad {
    std::uint8_t Blue = 0, Green = 0, Red = 0, Reserved = 0;
    bool operator==(const RgbQuad&) const = default;
};

class cImage {
public:
    cImage() = default;
    cImage(const cImage&) = delete;
    cImage& operator=(const cImage&) = delete;

    int Width() const { return width_; }
    int Height() const { return height_; }
    int BitCount() const { return bitCount_; }
    Hdc hdc() const { return bits_.empty() ? nullptr : this; }
    std::uint8_t* DIBitsPtr() { return bits_.empty() ? nullptr : bits_.data(); }
    const std::uint8_t* DIBitsPtr() const { return bits_.empty() ? nullptr : bits_.data(); }
    // Bytes in one row of pixel memory, padded to a multiple of four.
    int BytesPerScanLine() const;

    // The colour table; meaningful for 1, 4 and 8 bits.
    const std::array<RgbQuad, 256>& ColourTable() const { return table_; }
    int ColourCount() const { return bitCount_ <= 8 && bitCount_ > 0 ? 1 << bitCount_ : 0; }

    // Releases any image, then makes a blank one (all bits 0). BitCount must
    // be 1, 4, 8 or 24, the sizes at least 1 and the pixel memory within the
    // limit of a picture; otherwise the object stays empty and the answer is
    // false. Low depths get a grey ramp as colour table.
    bool Create(int Width, int Height, int BitCount);

    // Copies a picture in. BitCount 0 takes the picture's own depth (24) and
    // is given back; a lower depth maps each colour to the nearest entry of
    // the grey ramp. False, and the object empty, for an empty picture or a
    // depth Create doesn't know.
    bool CopyStdPicture(const imaging::Picture& Picture, int& BitCount);

    // Copies Width x Height pixels from (X, Y) of the source. BitCount 0
    // takes a depth from the size of the source's colour table (24 without).
    bool CopyHDC(Hdc hDC, int Width, int Height, int BitCount, int X, int Y);

    // Copies the source's colour table in; true when at least one entry was
    // copied and the source had as many as this image can hold or fewer.
    bool CopyPalletHDC(Hdc hDC);

    // Draws the whole image onto the target at (X, Y), clipped, with one of
    // the raster operations above (others draw nothing).
    void PaintHDC(cImage* hDC, int X, int Y, std::uint32_t RasterOp = kSrcCopy) const;

    // New images; null when this one is empty (or, for Rotate, for an angle
    // other than 90, 180 or 270 modulo 360).
    std::unique_ptr<cImage> Greyscale() const;
    std::unique_ptr<cImage> Resample(int Width, int Height) const;
    std::unique_ptr<cImage> Mirror(bool Vertical) const;
    std::unique_ptr<cImage> Rotate(int Angle) const;

    // Reads row y (0 at the top) as R G B triples, Width of them.
    void ReadRowRgb(int y, std::uint8_t* rgb) const;
    // Writes row y from R G B triples; low depths take the nearest colour.
    void WriteRowRgb(int y, const std::uint8_t* rgb);

private:
    void Release();
    std::uint8_t* RowPtr(int y) { return bits_.data() + std::size_t(height_ - 1 - y) * std::size_t(BytesPerScanLine()); }
    const std::uint8_t* RowPtr(int y) const {
        return bits_.data() + std::size_t(height_ - 1 - y) * std::size_t(BytesPerScanLine());
    }
    // The stored value of a pixel: an index, or B G R packed low to high.
    std::uint32_t Raw(int x, int y) const;
    void SetRaw(int x, int y, std::uint32_t v);
    // Copies w x h pixels from (sx, sy) of src to (dx, dy) here, clipped on
    // both sides, mapping colours when the depths or tables differ.
    void BltFrom(const cImage& src, int dx, int dy, int sx, int sy, int w, int h);
    std::unique_ptr<cImage> NewLike(int Width, int Height) const;

    int width_ = 0;
    int height_ = 0;
    int bitCount_ = 0;
    std::vector<std::uint8_t> bits_;
    std::array<RgbQuad, 256> table_{};
};

}  // namespace zelvo
