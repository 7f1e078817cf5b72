#include "platform/imaging/encode_png.h"

#include <csetjmp>

#include <png.h>

#include "platform/core/error.h"

namespace zelvo::imaging {

namespace {

void Append(png_structp png, png_bytep data, png_size_t length) {
    auto* out = static_cast<std::vector<std::uint8_t>*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}

void Flush(png_structp) {}

}  // namespace

std::vector<std::uint8_t> EncodePng(const Picture& picture) {
    if (picture.Empty() || picture.Pixels.size() < std::size_t(picture.Width) * std::size_t(picture.Height) * 3)
        throw Error(481, "Invalid picture: nothing to write", "EncodePng");
    std::vector<std::uint8_t> out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!png || !info) {
        png_destroy_write_struct(&png, nullptr);
        throw Error(7, "Out of memory", "EncodePng");
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        throw Error(481, "Invalid picture: the PNG could not be written", "EncodePng");
    }
    png_set_write_fn(png, &out, Append, Flush);
    png_set_IHDR(png, info, png_uint_32(picture.Width), png_uint_32(picture.Height), 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (int y = 0; y < picture.Height; ++y) png_write_row(png, const_cast<png_bytep>(picture.Row(y)));
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return out;
}

}  // namespace zelvo::imaging
