// libjpeg-turbo as the yardstick of the picture tests: its own encoding of
// a picture with settings of the test's choosing, and the PSNR of two
// pictures of the same size.
#pragma once

#include <jpeglib.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <vector>

#include "platform/imaging/picture.h"

namespace zelvo::testing {

// `configure` runs after jpeg_set_defaults, before compression starts.
inline std::vector<std::uint8_t> LibjpegEncode(const imaging::Picture& p,
                                               const std::function<void(jpeg_compress_struct&)>& configure) {
    jpeg_compress_struct c{};
    jpeg_error_mgr err{};
    c.err = jpeg_std_error(&err);
    jpeg_create_compress(&c);
    unsigned char* out = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&c, &out, &size);
    c.image_width = JDIMENSION(p.Width), c.image_height = JDIMENSION(p.Height);
    c.input_components = 3, c.in_color_space = JCS_RGB;
    jpeg_set_defaults(&c);
    configure(c);
    jpeg_start_compress(&c, TRUE);
    while (c.next_scanline < c.image_height) {
        JSAMPROW row = const_cast<JSAMPROW>(p.Row(int(c.next_scanline)));
        jpeg_write_scanlines(&c, &row, 1);
    }
    jpeg_finish_compress(&c);
    jpeg_destroy_compress(&c);
    std::vector<std::uint8_t> bytes(out, out + size);
    std::free(out);
    return bytes;
}

// 99 for identical pictures, -1 for pictures of different sizes.
inline double Psnr(const imaging::Picture& a, const imaging::Picture& b) {
    if (a.Width != b.Width || a.Height != b.Height) return -1;
    double sse = 0;
    for (std::size_t i = 0; i < a.Pixels.size(); ++i) sse += std::pow(double(a.Pixels[i]) - b.Pixels[i], 2);
    return sse == 0 ? 99 : 10 * std::log10(255.0 * 255 * double(a.Pixels.size()) / sse);
}

}  // namespace zelvo::testing
