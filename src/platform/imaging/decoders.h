// The decoders behind PictureLoader, one per format. Internal to imaging.
//
// Each takes the whole encoded file and returns the picture, or throws
// zelvo::Error(kErrInvalidPicture, "Invalid picture: <reason>"). Each checks
// the claimed size with CheckPictureSize before it allocates pixels.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/imaging/picture.h"

namespace zelvo::imaging::detail {

using Bytes = std::span<const std::uint8_t>;

// The largest file read whole: an uncompressed 32-bit bitmap at the pixel
// limit, and some room for headers.
constexpr std::int64_t kMaxFileBytes = 4 * kMaxPicturePixels + 65536;

[[noreturn]] void Fail(const std::string& reason);

// Refuses sizes of 0 and sizes above kMaxPicturePixels, then sizes the
// picture's pixel buffer.
void AllocatePicture(Picture& p, std::int64_t width, std::int64_t height);

bool LooksLikeJpeg(Bytes b);
bool LooksLikePng(Bytes b);
bool LooksLikeGif(Bytes b);
bool LooksLikeTiff(Bytes b);
bool LooksLikeBmp(Bytes b);
bool LooksLikePnm(Bytes b);

Picture DecodeJpeg(Bytes b);
// The same at the smallest of the scales 1/2, 1/4, 1/8 the decoder offers
// whose picture still has at least minWidth x minHeight pixels (or at full
// size when none does). Decoding at a reduced scale skips most of the work.
Picture DecodeJpeg(Bytes b, int minWidth, int minHeight);
Picture DecodePng(Bytes b);
Picture DecodeGif(Bytes b);
Picture DecodeTiff(Bytes b);
Picture DecodeBmp(Bytes b);
Picture DecodePnm(Bytes b);

}  // namespace zelvo::imaging::detail
