// Binary PNM (P5 grey, P6 colour), 8 or 16 bits a sample: the form of the
// reference images the encoder is measured on, and what netpbm tools write.
#include <cctype>
#include <string>

#include "platform/imaging/decoders.h"

namespace zelvo::imaging::detail {

namespace {

// Reads one decimal header field, passing over white space and comments.
std::int64_t Field(Bytes b, std::size_t& pos) {
    for (;;) {
        while (pos < b.size() && std::isspace(b[pos])) ++pos;
        if (pos < b.size() && b[pos] == '#') {
            while (pos < b.size() && b[pos] != '\n' && b[pos] != '\r') ++pos;
            continue;
        }
        break;
    }
    if (pos >= b.size() || !std::isdigit(b[pos])) Fail("PNM: damaged header");
    std::int64_t v = 0;
    while (pos < b.size() && std::isdigit(b[pos])) {
        v = v * 10 + (b[pos++] - '0');
        if (v > (std::int64_t(1) << 40)) Fail("PNM: damaged header");
    }
    return v;
}

}  // namespace

bool LooksLikePnm(Bytes b) { return b.size() >= 3 && b[0] == 'P' && (b[1] == '5' || b[1] == '6') && std::isspace(b[2]); }

Picture DecodePnm(Bytes b) {
    const int channels = b[1] == '6' ? 3 : 1;
    std::size_t pos = 2;
    const std::int64_t w = Field(b, pos), h = Field(b, pos), maxval = Field(b, pos);
    if (maxval < 1 || maxval > 65535) Fail("PNM: the largest sample value must be 1 to 65535");
    ++pos;  // the one white-space character before the samples
    Picture pic;
    AllocatePicture(pic, w, h);
    const int bytes = maxval > 255 ? 2 : 1;
    const std::size_t need = std::size_t(w) * std::size_t(h) * std::size_t(channels * bytes);
    if (pos > b.size() || b.size() - pos < need) Fail("PNM: the file ends before the last row of pixels");
    const std::uint8_t* in = b.data() + pos;
    std::uint8_t* out = pic.Pixels.data();
    const std::size_t samples = std::size_t(w) * std::size_t(h) * std::size_t(channels);
    for (std::size_t i = 0; i < samples; ++i) {
        std::uint32_t v = bytes == 2 ? (std::uint32_t(in[2 * i]) << 8 | in[2 * i + 1]) : in[i];
        if (v > std::uint32_t(maxval)) v = std::uint32_t(maxval);
        const auto s = maxval == 255 ? std::uint8_t(v) : std::uint8_t((v * 255 + std::uint32_t(maxval) / 2) / std::uint32_t(maxval));
        if (channels == 3) {
            out[i] = s;
        } else {
            out[3 * i] = out[3 * i + 1] = out[3 * i + 2] = s;
        }
    }
    return pic;
}

}  // namespace zelvo::imaging::detail
