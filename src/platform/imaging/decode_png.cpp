// PNG through libpng's simplified reader, which handles every colour type
// and bit depth. Transparent pixels are laid on white, as on a card.
#include <cstring>

#include <png.h>

#include "platform/imaging/decoders.h"

namespace zelvo::imaging::detail {

bool LooksLikePng(Bytes b) {
    static const std::uint8_t sig[8] = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
    return b.size() >= 8 && std::memcmp(b.data(), sig, 8) == 0;
}

Picture DecodePng(Bytes b) {
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&image, b.data(), b.size()))
        Fail(std::string("PNG: ") + image.message);
    Picture pic;
    try {
        AllocatePicture(pic, image.width, image.height);
    } catch (...) {
        png_image_free(&image);
        throw;
    }
    image.format = PNG_FORMAT_RGB;
    png_color background{255, 255, 255};
    if (!png_image_finish_read(&image, &background, pic.Pixels.data(), 0, nullptr))
        Fail(std::string("PNG: ") + image.message);  // finish_read has freed the image
    return pic;
}

}  // namespace zelvo::imaging::detail
