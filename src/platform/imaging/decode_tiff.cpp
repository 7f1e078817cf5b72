// TIFF through libtiff's RGBA reader, which covers the photometric kinds a
// scanner or camera writes. The first directory is the picture. libtiff's
// messages go to the error text, never to stderr.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>

#include <tiffio.h>

#include "platform/imaging/decoders.h"

namespace zelvo::imaging::detail {

namespace {

struct Stream {
    Bytes data;
    toff_t pos = 0;
    std::string error;
};

tmsize_t Read(thandle_t h, void* buf, tmsize_t size) {
    auto* s = static_cast<Stream*>(h);
    if (size <= 0 || s->pos >= s->data.size()) return 0;
    const auto n = std::min<toff_t>(toff_t(size), s->data.size() - s->pos);
    std::memcpy(buf, s->data.data() + s->pos, std::size_t(n));
    s->pos += n;
    return tmsize_t(n);
}
tmsize_t Write(thandle_t, void*, tmsize_t) { return 0; }
toff_t Seek(thandle_t h, toff_t off, int whence) {
    auto* s = static_cast<Stream*>(h);
    toff_t base = whence == SEEK_CUR ? s->pos : whence == SEEK_END ? s->data.size() : 0;
    s->pos = base + off;  // reads past the end give 0 bytes
    return s->pos;
}
int Close(thandle_t) { return 0; }
toff_t Size(thandle_t h) { return static_cast<Stream*>(h)->data.size(); }
int Map(thandle_t, void**, toff_t*) { return 0; }
void Unmap(thandle_t, void*, toff_t) {}

int OnError(TIFF*, void* user, const char* module, const char* fmt, va_list ap) {
    auto* s = static_cast<Stream*>(user);
    if (s->error.empty()) {
        char buf[512];
        std::vsnprintf(buf, sizeof buf, fmt, ap);
        s->error = buf;
    }
    return 1;
}
int OnWarning(TIFF*, void*, const char*, const char*, va_list) { return 1; }

}  // namespace

bool LooksLikeTiff(Bytes b) {
    return b.size() >= 4 && ((b[0] == 'I' && b[1] == 'I' && (b[2] == 42 || b[2] == 43) && b[3] == 0) ||
                             (b[0] == 'M' && b[1] == 'M' && b[2] == 0 && (b[3] == 42 || b[3] == 43)));
}

Picture DecodeTiff(Bytes b) {
    Stream stream;
    stream.data = b;
    std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> opts(TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
    // No single buffer libtiff takes for us may be larger than a picture at
    // the limit could need.
    TIFFOpenOptionsSetMaxSingleMemAlloc(opts.get(), tmsize_t(kMaxPicturePixels) * 4);
    TIFFOpenOptionsSetErrorHandlerExtR(opts.get(), OnError, &stream);
    TIFFOpenOptionsSetWarningHandlerExtR(opts.get(), OnWarning, &stream);
    TIFF* tif = TIFFClientOpenExt("photo", "rm", &stream, Read, Write, Seek, Close, Size, Map, Unmap, opts.get());
    auto fail = [&](const std::string& what) {
        Fail("TIFF: " + (stream.error.empty() ? what : stream.error));
    };
    if (!tif) fail("not readable");
    std::unique_ptr<TIFF, void (*)(TIFF*)> closer(tif, TIFFClose);

    std::uint32_t w = 0, h = 0;
    TIFFGetField(tif, TIFFTAG_IMAGEWIDTH, &w);
    TIFFGetField(tif, TIFFTAG_IMAGELENGTH, &h);
    Picture pic;
    AllocatePicture(pic, w, h);
    char why[1024] = {};
    if (!TIFFRGBAImageOK(tif, why)) fail(why);
    std::vector<std::uint32_t> raster(std::size_t(w) * h);
    if (!TIFFReadRGBAImageOriented(tif, w, h, raster.data(), ORIENTATION_TOPLEFT, 1)) fail("damaged data");
    // The raster is premultiplied by alpha; what is transparent shows white.
    std::uint8_t* out = pic.Pixels.data();
    for (std::uint32_t v : raster) {
        const unsigned a = TIFFGetA(v), rest = 255 - a;
        out[0] = std::uint8_t(std::min(255u, TIFFGetR(v) + rest));
        out[1] = std::uint8_t(std::min(255u, TIFFGetG(v) + rest));
        out[2] = std::uint8_t(std::min(255u, TIFFGetB(v) + rest));
        out += 3;
    }
    return pic;
}

}  // namespace zelvo::imaging::detail
