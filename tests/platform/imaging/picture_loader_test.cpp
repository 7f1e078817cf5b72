// PictureLoader over every format of the photo filter, built here with the
// format libraries' own writers (or by hand for BMP), and over damaged files.
#include <gtest/gtest.h>

#include "support/reference_jpeg.h"
#include "support/shared_data.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gif_lib.h>
#include <jpeglib.h>
#include <tiffio.h>

#include "platform/imaging/picture_loader.h"

namespace zelvo::imaging {
namespace {

using testing::Psnr;

using ByteVec = std::vector<std::uint8_t>;

ByteVec ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return ByteVec(std::istreambuf_iterator<char>(in), {});
}

std::string Shared(const char* name) { return std::string(ZELVO_SHARED_DATA) + "/images/" + name; }

// A small picture with distinct colours in every pixel, so that a format
// that swaps channels, flips rows or shifts columns shows it.
Picture Pattern(int w, int h) {
    Picture p;
    p.Width = w, p.Height = h;
    p.Pixels.resize(std::size_t(w * h * 3));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            std::uint8_t* px = p.Row(y) + 3 * x;
            px[0] = std::uint8_t(x * 37 + y * 5), px[1] = std::uint8_t(y * 41 + 7), px[2] = std::uint8_t(200 - x * 13);
        }
    return p;
}


ByteVec EncodeJpeg(const Picture& p, bool progressive, bool grey) {
    return testing::LibjpegEncode(p, [&](jpeg_compress_struct& c) {
        jpeg_set_quality(&c, 95, TRUE);
        if (grey) jpeg_set_colorspace(&c, JCS_GRAYSCALE);
        if (progressive) jpeg_simple_progression(&c);
    });
}

void Le16(ByteVec& b, unsigned v) { b.push_back(std::uint8_t(v)), b.push_back(std::uint8_t(v >> 8)); }
void Le32(ByteVec& b, std::uint32_t v) { Le16(b, v & 0xFFFF), Le16(b, v >> 16); }

// A BMP with a 40-byte header. Low depths get a palette of the pattern's
// first colours, indexed so that pixel i uses entry i modulo the count.
ByteVec EncodeBmp(const Picture& p, int bpp, bool topDown, Picture& expected) {
    expected = p;
    const int colours = bpp <= 8 ? 1 << bpp : 0;
    const std::size_t stride = ((std::size_t(p.Width) * bpp + 31) / 32) * 4;
    ByteVec b = {'B', 'M'};
    const std::uint32_t off = 14 + 40 + 4 * std::uint32_t(colours);
    Le32(b, off + std::uint32_t(stride * std::size_t(p.Height)));
    Le32(b, 0);
    Le32(b, off);
    Le32(b, 40);
    Le32(b, std::uint32_t(p.Width));
    Le32(b, std::uint32_t(topDown ? -p.Height : p.Height));
    Le16(b, 1), Le16(b, unsigned(bpp));
    for (int i = 0; i < 6; ++i) Le32(b, 0);
    for (int i = 0; i < colours; ++i) {
        const std::uint8_t* c = p.Pixels.data() + 3 * std::size_t(i % (p.Width * p.Height));
        b.insert(b.end(), {c[2], c[1], c[0], 0});
    }
    for (int row = 0; row < p.Height; ++row) {
        const int y = topDown ? row : p.Height - 1 - row;
        ByteVec line(stride, 0);
        for (int x = 0; x < p.Width; ++x) {
            const std::uint8_t* px = p.Row(y) + 3 * x;
            std::uint8_t* e = expected.Row(y) + 3 * x;
            if (bpp <= 8) {
                const int i = (y * p.Width + x) % colours;
                std::memcpy(e, p.Pixels.data() + 3 * std::size_t(i % (p.Width * p.Height)), 3);
                const std::size_t bit = std::size_t(x) * std::size_t(bpp);
                line[bit / 8] |= std::uint8_t(i << (8 - bpp - bit % 8));
            } else if (bpp == 16) {  // 5-5-5: the loader widens 5 bits to 8
                const unsigned r = px[0] >> 3, g = px[1] >> 3, bl = px[2] >> 3;
                const unsigned v = r << 10 | g << 5 | bl;
                line[2 * std::size_t(x)] = std::uint8_t(v), line[2 * std::size_t(x) + 1] = std::uint8_t(v >> 8);
                e[0] = std::uint8_t((r * 255 + 15) / 31), e[1] = std::uint8_t((g * 255 + 15) / 31),
                e[2] = std::uint8_t((bl * 255 + 15) / 31);
            } else {
                const std::size_t n = std::size_t(bpp / 8);
                line[n * std::size_t(x)] = px[2], line[n * std::size_t(x) + 1] = px[1], line[n * std::size_t(x) + 2] = px[0];
            }
        }
        b.insert(b.end(), line.begin(), line.end());
    }
    return b;
}

int WriteToVector(GifFileType* gif, const GifByteType* data, int n) {
    auto* out = static_cast<ByteVec*>(gif->UserData);
    out->insert(out->end(), data, data + n);
    return n;
}

// A GIF of up to 256 colours, taken from the pattern's pixels.
ByteVec EncodeGif(const Picture& p, bool interlace) {
    ByteVec out;
    int err = 0;
    GifFileType* gif = EGifOpen(&out, WriteToVector, &err);
    ColorMapObject* map = GifMakeMapObject(256, nullptr);
    const int n = p.Width * p.Height;
    for (int i = 0; i < 256; ++i) {
        const std::uint8_t* c = p.Pixels.data() + 3 * std::size_t(i % n);
        map->Colors[i] = GifColorType{c[0], c[1], c[2]};
    }
    EGifPutScreenDesc(gif, p.Width, p.Height, 8, 0, map);
    EGifPutImageDesc(gif, 0, 0, p.Width, p.Height, interlace, nullptr);
    std::vector<GifPixelType> line(std::size_t(p.Width));
    auto put = [&](int y) {
        for (int x = 0; x < p.Width; ++x) line[std::size_t(x)] = GifPixelType((y * p.Width + x) % 256);
        EGifPutLine(gif, line.data(), p.Width);
    };
    if (interlace) {
        const int start[4] = {0, 4, 2, 1}, step[4] = {8, 8, 4, 2};
        for (int pass = 0; pass < 4; ++pass)
            for (int y = start[pass]; y < p.Height; y += step[pass]) put(y);
    } else {
        for (int y = 0; y < p.Height; ++y) put(y);
    }
    EGifCloseFile(gif, &err);
    GifFreeMapObject(map);
    return out;
}

ByteVec EncodeTiff(const Picture& p) {
    const auto path = std::filesystem::temp_directory_path() / ("zelvo_loader_" + std::to_string(::getpid()) + ".tif");
    TIFF* t = TIFFOpen(path.c_str(), "w");
    TIFFSetField(t, TIFFTAG_IMAGEWIDTH, std::uint32_t(p.Width));
    TIFFSetField(t, TIFFTAG_IMAGELENGTH, std::uint32_t(p.Height));
    TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(t, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(t, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(t, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(t, TIFFTAG_ROWSPERSTRIP, 4);
    for (int y = 0; y < p.Height; ++y) TIFFWriteScanline(t, const_cast<std::uint8_t*>(p.Row(y)), std::uint32_t(y), 0);
    TIFFClose(t);
    ByteVec bytes = ReadFile(path.string());
    std::filesystem::remove(path);
    return bytes;
}

ByteVec EncodePnm(const Picture& p) {
    const std::string head = "P6\n# made by the test\n" + std::to_string(p.Width) + " " + std::to_string(p.Height) + "\n255\n";
    ByteVec b(head.begin(), head.end());
    b.insert(b.end(), p.Pixels.begin(), p.Pixels.end());
    return b;
}

TEST(PictureLoader, LosslessFormatsGiveThePixelsBack) {
    const Picture source = Pattern(13, 11);
    struct Case {
        std::string name;
        ByteVec bytes;
        Picture expected;
    };
    std::vector<Case> cases;
    for (int bpp : {1, 4, 8, 16, 24, 32})
        for (bool topDown : {false, true}) {
            Case c{"BMP " + std::to_string(bpp) + (topDown ? " bit top-down" : " bit"), {}, {}};
            c.bytes = EncodeBmp(source, bpp, topDown, c.expected);
            cases.push_back(std::move(c));
        }
    Picture gifExpected = source;
    for (int i = 0; i < 13 * 11; ++i) std::memcpy(&gifExpected.Pixels[3 * std::size_t(i)], &source.Pixels[3 * std::size_t(i % 256)], 3);
    cases.push_back({"GIF", EncodeGif(source, false), gifExpected});
    cases.push_back({"GIF interlaced", EncodeGif(source, true), gifExpected});
    cases.push_back({"TIFF LZW", EncodeTiff(source), source});
    cases.push_back({"PNM", EncodePnm(source), source});

    for (const Case& c : cases) {
        PictureLoader loader;
        const auto p = loader.PictureFromBytes(c.bytes);
        ASSERT_TRUE(p) << c.name << ": " << loader.LastError().Description;
        EXPECT_EQ(loader.LastError().Number, 0) << c.name;
        EXPECT_EQ(p->Width, 13) << c.name;
        EXPECT_EQ(p->Height, 11) << c.name;
        EXPECT_EQ(p->Pixels, c.expected.Pixels) << c.name;
        EXPECT_EQ(p->FileBytes, c.bytes) << c.name << ": the picture keeps the bytes it came from";
    }
}

TEST(PictureLoader, JpegVariants) {
    ZELVO_NEEDS_SHARED_IMAGES();
    PictureLoader loader;
    const auto source = loader.LoadPicture(Shared("kodim23.ppm"));
    ASSERT_TRUE(source) << loader.LastError().Description;
    for (bool progressive : {false, true}) {
        const auto p = loader.PictureFromBytes(EncodeJpeg(*source, progressive, false));
        ASSERT_TRUE(p) << loader.LastError().Description;
        EXPECT_GT(Psnr(*source, *p), 35) << (progressive ? "progressive" : "baseline");
    }
    const auto grey = loader.PictureFromBytes(EncodeJpeg(*source, false, true));
    ASSERT_TRUE(grey) << loader.LastError().Description;
    for (std::size_t i = 0; i < grey->Pixels.size(); i += 3) {
        ASSERT_EQ(grey->Pixels[i], grey->Pixels[i + 1]);
        ASSERT_EQ(grey->Pixels[i], grey->Pixels[i + 2]);
    }
}

TEST(PictureLoader, PngAndPnmOfTheSharedImagesAgree) {
    ZELVO_NEEDS_SHARED_IMAGES();
    const std::pair<const char*, const char*> pairs[] = {
        {"astronaut.png", "astronaut.ppm"}, {"kodim04.png", "kodim04.ppm"}, {"camera.png", "camera.pgm"}};
    for (const auto& [png, pnm] : pairs) {
        PictureLoader loader;
        const auto a = loader.LoadPicture(Shared(png));
        ASSERT_TRUE(a) << png << ": " << loader.LastError().Description;
        const auto b = loader.LoadPicture(Shared(pnm));
        ASSERT_TRUE(b) << pnm << ": " << loader.LastError().Description;
        EXPECT_EQ(a->Width, b->Width);
        EXPECT_EQ(a->Pixels, b->Pixels) << png << " and " << pnm;
    }
}

TEST(PictureLoader, DamagedFilesGiveAnErrorNotACrash) {
    ZELVO_NEEDS_SHARED_IMAGES();
    PictureLoader loader;
    const Picture source = Pattern(40, 30);
    Picture unused;
    struct Case {
        std::string name;
        ByteVec whole;  // cut at several places below
    };
    const std::vector<Case> formats = {
        {"JPEG", EncodeJpeg(source, false, false)}, {"progressive JPEG", EncodeJpeg(source, true, false)},
        {"BMP", EncodeBmp(source, 24, false, unused)}, {"GIF", EncodeGif(source, false)},
        {"TIFF", EncodeTiff(source)}, {"PNM", EncodePnm(source)}};
    ByteVec png = ReadFile(Shared("camera.png"));
    for (const Case& f : formats) {
        for (double keep : {0.05, 0.3, 0.6, 0.9}) {
            ByteVec cut(f.whole.begin(), f.whole.begin() + long(double(f.whole.size()) * keep));
            EXPECT_FALSE(loader.PictureFromBytes(cut)) << f.name << " cut to " << keep;
            EXPECT_NE(loader.LastError().Number, 0) << f.name << " cut to " << keep;
            EXPECT_FALSE(loader.LastError().Description.empty()) << f.name;
        }
    }
    ByteVec pngCut(png.begin(), png.begin() + long(png.size() / 2));
    EXPECT_FALSE(loader.PictureFromBytes(pngCut));
    EXPECT_EQ(loader.LastError().Number, kErrInvalidPicture);
    EXPECT_NE(loader.LastError().Description.find("PNG"), std::string::npos) << loader.LastError().Description;

    const std::pair<std::string, ByteVec> other[] = {
        {"empty", {}},
        {"text", ByteVec{'h', 'e', 'l', 'l', 'o', ' ', 'w', 'o', 'r', 'l', 'd'}},
        {"BMP with RLE", [] {
             Picture e;
             ByteVec b = EncodeBmp(Pattern(4, 4), 8, false, e);
             b[30] = 1;
             return b;
         }()},
    };
    for (const auto& [name, bytes] : other) {
        EXPECT_FALSE(loader.PictureFromBytes(bytes)) << name;
        EXPECT_EQ(loader.LastError().Number, kErrInvalidPicture) << name;
    }
}

TEST(PictureLoader, HugeClaimedSizesAreRefusedBeforeAllocating) {
    PictureLoader loader;
    const std::string pnm = "P6\n100000 100000\n255\n";
    EXPECT_FALSE(loader.PictureFromBytes(ByteVec(pnm.begin(), pnm.end())));
    EXPECT_NE(loader.LastError().Description.find("limit"), std::string::npos) << loader.LastError().Description;

    Picture e;
    ByteVec bmp = EncodeBmp(Pattern(4, 4), 24, false, e);
    bmp[18] = 0xFF, bmp[19] = 0xFF, bmp[20] = 0xFF, bmp[21] = 0x00;  // 16 million pixels wide
    bmp[22] = 0xFF, bmp[23] = 0xFF, bmp[24] = 0x00;                  // 65535 rows
    EXPECT_FALSE(loader.PictureFromBytes(bmp));
    EXPECT_NE(loader.LastError().Description.find("limit"), std::string::npos) << loader.LastError().Description;

    ByteVec jpeg = EncodeJpeg(Pattern(16, 16), false, false);
    // The frame header's height and width: FF C0, length, precision, then them.
    for (std::size_t i = 0; i + 8 < jpeg.size(); ++i)
        if (jpeg[i] == 0xFF && jpeg[i + 1] == 0xC0) {
            jpeg[i + 5] = jpeg[i + 7] = 0xF0;  // 61440 x 61440
            jpeg[i + 6] = jpeg[i + 8] = 0x00;
            break;
        }
    EXPECT_FALSE(loader.PictureFromBytes(jpeg));
    EXPECT_NE(loader.LastError().Description.find("limit"), std::string::npos) << loader.LastError().Description;
}

TEST(PictureLoader, MissingFile) {
    ZELVO_NEEDS_SHARED_IMAGES();
    PictureLoader loader;
    EXPECT_FALSE(loader.LoadPicture("/nonexistent/photo.jpg"));
    EXPECT_EQ(loader.LastError().Number, kErrFileNotFound);
    const auto ok = loader.LoadPicture(Shared("gen_1x1.ppm"));
    ASSERT_TRUE(ok);
    EXPECT_EQ(loader.LastError().Number, 0) << "a success clears the last error";
    EXPECT_EQ(ok->Pixels, (ByteVec{200, 30, 90}));
}

}  // namespace
}  // namespace zelvo::imaging
