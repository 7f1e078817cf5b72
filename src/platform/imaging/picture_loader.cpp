#include "platform/imaging/picture_loader.h"

#include <fstream>
#include <filesystem>
#include <iterator>
#include <system_error>

#include "platform/core/error.h"
#include "platform/imaging/decoders.h"

namespace zelvo::imaging {

namespace detail {

void Fail(const std::string& reason) {
    throw Error(kErrInvalidPicture, "Invalid picture: " + reason, "PictureLoader");
}

void AllocatePicture(Picture& p, std::int64_t width, std::int64_t height) {
    if (width <= 0 || height <= 0)
        Fail("the image has no pixels (" + std::to_string(width) + "x" + std::to_string(height) + ")");
    if (width > kMaxPicturePixels || height > kMaxPicturePixels || width * height > kMaxPicturePixels)
        Fail(std::to_string(width) + "x" + std::to_string(height) + " pixels is more than the limit of " +
             std::to_string(kMaxPicturePixels));
    p.Width = int(width);
    p.Height = int(height);
    p.Pixels.assign(std::size_t(width) * std::size_t(height) * 3, 0);
}

}  // namespace detail

std::optional<Picture> PictureLoader::PictureFromBytes(std::span<const std::uint8_t> Bytes) {
    return PictureFromBytes(Bytes, 0, 0);
}

std::optional<Picture> PictureLoader::PictureFromBytes(std::span<const std::uint8_t> Bytes, int minWidth,
                                                       int minHeight) {
    using namespace detail;
    lastError_ = {};
    try {
        Picture p;
        if (LooksLikeJpeg(Bytes)) p = DecodeJpeg(Bytes, minWidth, minHeight);
        else if (LooksLikePng(Bytes)) p = DecodePng(Bytes);
        else if (LooksLikeGif(Bytes)) p = DecodeGif(Bytes);
        else if (LooksLikeTiff(Bytes)) p = DecodeTiff(Bytes);
        else if (LooksLikeBmp(Bytes)) p = DecodeBmp(Bytes);
        else if (LooksLikePnm(Bytes)) p = DecodePnm(Bytes);
        else if (Bytes.empty()) Fail("no data");
        else Fail("not a JPEG, PNG, GIF, TIFF, BMP or PNM image");
        p.FileBytes.assign(Bytes.begin(), Bytes.end());
        return p;
    } catch (const Error& e) {
        lastError_ = {e.number(), e.description()};
    } catch (const std::bad_alloc&) {
        lastError_ = {7, "Out of memory"};
    }
    return std::nullopt;
}

std::optional<Picture> PictureLoader::LoadPicture(const std::string& FileName) {
    lastError_ = {};
    std::error_code ec;
    if (FileName.empty() || !std::filesystem::is_regular_file(FileName, ec)) {
        lastError_ = {kErrFileNotFound, "File not found: " + FileName};
        return std::nullopt;
    }
    // The file is read whole; its size is bounded like the pixels are, since a
    // compressed picture is never larger than a few bytes per pixel.
    const auto size = std::filesystem::file_size(FileName, ec);
    if (ec || size > std::uintmax_t(detail::kMaxFileBytes)) {
        lastError_ = {kErrFileAccess, ec ? "Path/File access error: " + FileName
                                         : "Invalid picture: the file is larger than the limit"};
        if (!ec) lastError_.Number = kErrInvalidPicture;
        return std::nullopt;
    }
    std::ifstream in(FileName, std::ios::binary);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    if (!in || !in.read(reinterpret_cast<char*>(bytes.data()), std::streamsize(bytes.size()))) {
        lastError_ = {kErrFileAccess, "Path/File access error: " + FileName};
        return std::nullopt;
    }
    return PictureFromBytes(bytes);
}

}  // namespace zelvo::imaging
