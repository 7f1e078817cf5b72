// GIF through giflib: the first frame, laid on the logical screen. Records
// are read one by one up to the first image, so a long animation costs
// nothing past its first frame.
#include <algorithm>
#include <cstring>

#include <gif_lib.h>

#include "platform/imaging/decoders.h"

namespace zelvo::imaging::detail {

namespace {

struct Reader {
    Bytes data;
    std::size_t pos = 0;
};

int ReadFromMemory(GifFileType* gif, GifByteType* buf, int size) {
    auto* r = static_cast<Reader*>(gif->UserData);
    const std::size_t n = std::min<std::size_t>(std::size_t(std::max(size, 0)), r->data.size() - r->pos);
    std::memcpy(buf, r->data.data() + r->pos, n);
    r->pos += n;
    return int(n);
}

struct GifCloser {
    GifFileType* gif;
    ~GifCloser() {
        int err = 0;
        if (gif) DGifCloseFile(gif, &err);
    }
};

[[noreturn]] void FailGif(int code) {
    const char* text = GifErrorString(code);
    Fail(std::string("GIF: ") + (text ? text : "damaged data"));
}

}  // namespace

bool LooksLikeGif(Bytes b) {
    return b.size() >= 6 && (std::memcmp(b.data(), "GIF87a", 6) == 0 || std::memcmp(b.data(), "GIF89a", 6) == 0);
}

Picture DecodeGif(Bytes b) {
    Reader reader;
    reader.data = b;
    int err = 0;
    GifFileType* gif = DGifOpen(&reader, ReadFromMemory, &err);
    if (!gif) FailGif(err);
    GifCloser closer{gif};

    int transparent = -1;
    for (;;) {
        GifRecordType type;
        if (DGifGetRecordType(gif, &type) == GIF_ERROR) FailGif(gif->Error);
        if (type == TERMINATE_RECORD_TYPE) Fail("GIF: the file holds no image");
        if (type == EXTENSION_RECORD_TYPE) {
            int code = 0;
            GifByteType* ext = nullptr;
            if (DGifGetExtension(gif, &code, &ext) == GIF_ERROR) FailGif(gif->Error);
            if (code == GRAPHICS_EXT_FUNC_CODE && ext && ext[0] >= 4 && (ext[1] & 1)) transparent = ext[4];
            while (ext) {
                if (DGifGetExtensionNext(gif, &ext) == GIF_ERROR) FailGif(gif->Error);
            }
            continue;
        }
        if (type != IMAGE_DESC_RECORD_TYPE) continue;
        if (DGifGetImageDesc(gif) == GIF_ERROR) FailGif(gif->Error);
        break;
    }

    const GifImageDesc& d = gif->Image;
    const ColorMapObject* map = d.ColorMap ? d.ColorMap : gif->SColorMap;
    if (!map || map->ColorCount <= 0) Fail("GIF: no colour table");
    if (d.Width <= 0 || d.Height <= 0) Fail("GIF: the first frame has no pixels");

    // The picture is the logical screen when the frame lies within it, else
    // the frame alone (some writers leave the screen size at 0).
    const bool onScreen = gif->SWidth >= d.Left + d.Width && gif->SHeight >= d.Top + d.Height && d.Left >= 0 &&
                          d.Top >= 0;
    const std::int64_t width = onScreen ? gif->SWidth : d.Width;
    const std::int64_t height = onScreen ? gif->SHeight : d.Height;
    Picture pic;
    AllocatePicture(pic, width, height);
    const int left = onScreen ? d.Left : 0, top = onScreen ? d.Top : 0;
    if (onScreen && (left != 0 || top != 0 || width != d.Width || height != d.Height)) {
        // Around the frame: the background colour, or white when it is transparent.
        std::uint8_t bg[3] = {255, 255, 255};
        if (gif->SColorMap && gif->SBackGroundColor < gif->SColorMap->ColorCount &&
            gif->SBackGroundColor != transparent) {
            const GifColorType& c = gif->SColorMap->Colors[gif->SBackGroundColor];
            bg[0] = c.Red, bg[1] = c.Green, bg[2] = c.Blue;
        }
        for (std::size_t i = 0; i < pic.Pixels.size(); i += 3) std::memcpy(&pic.Pixels[i], bg, 3);
    }

    std::vector<GifPixelType> line(std::size_t(d.Width));
    auto putLine = [&](int y) {
        std::uint8_t* out = pic.Row(top + y) + std::size_t(left) * 3;
        for (int x = 0; x < d.Width; ++x, out += 3) {
            const int i = line[std::size_t(x)];
            if (i == transparent || i >= map->ColorCount) {
                out[0] = out[1] = out[2] = 255;
            } else {
                out[0] = map->Colors[i].Red, out[1] = map->Colors[i].Green, out[2] = map->Colors[i].Blue;
            }
        }
    };
    if (d.Interlace) {
        static const int start[4] = {0, 4, 2, 1}, step[4] = {8, 8, 4, 2};
        for (int pass = 0; pass < 4; ++pass)
            for (int y = start[pass]; y < d.Height; y += step[pass]) {
                if (DGifGetLine(gif, line.data(), d.Width) == GIF_ERROR) FailGif(gif->Error);
                putLine(y);
            }
    } else {
        for (int y = 0; y < d.Height; ++y) {
            if (DGifGetLine(gif, line.data(), d.Width) == GIF_ERROR) FailGif(gif->Error);
            putLine(y);
        }
    }
    return pic;
}

}  // namespace zelvo::imaging::detail
