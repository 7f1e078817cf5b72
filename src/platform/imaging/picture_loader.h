// PictureLoader: reads image files and photo bytes into pictures.
//
// The formats are those a user's photo comes in: JPEG (baseline, progressive,
// grey, CMYK), PNG, GIF (the first frame), TIFF, BMP (1, 4, 8, 16, 24 and
// 32 bits, uncompressed) and binary PNM (P5/P6). The format is told from the
// bytes, never from the file name, because a stored photo has no name.
//
// A load either gives a picture or leaves LastError with a number other than 0
// and a text that says what was wrong. Damaged and truncated files never
// crash, and a header claiming more than kMaxPicturePixels is refused before
// any pixel memory is taken.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/imaging/picture.h"

namespace zelvo::imaging {

// Numbers LastError takes. They follow the runtime the book was written for.
constexpr int kErrFileNotFound = 53;    // "File not found"
constexpr int kErrFileAccess = 75;      // "Path/File access error"
constexpr int kErrInvalidPicture = 481; // "Invalid picture", with the reason after a colon

struct LoadError {
    int Number = 0;
    std::string Description;
};

class PictureLoader {
public:
    // Reads the file and decodes it. On failure returns nothing and sets
    // LastError. The picture keeps the file's bytes in FileBytes.
    std::optional<Picture> LoadPicture(const std::string& FileName);

    // Decodes the content of a photo field. Same contract as LoadPicture.
    std::optional<Picture> PictureFromBytes(std::span<const std::uint8_t> Bytes);

    // The same for a picture that is only to be shown shrunk to fit
    // minWidth x minHeight: a JPEG is decoded at the smallest reduced scale
    // that still covers that size, so the picture may be smaller than the
    // file's (by 2, 4 or 8). Other formats decode at full size.
    std::optional<Picture> PictureFromBytes(std::span<const std::uint8_t> Bytes, int minWidth, int minHeight);

    // The outcome of the last load: Number 0 after a success.
    const LoadError& LastError() const { return lastError_; }

private:
    LoadError lastError_;
};

}  // namespace zelvo::imaging
