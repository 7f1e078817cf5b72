// cJpeg: tables, settings and their errors, the file layout, and the coded
// data, checked against an independent reader (jpeg_reader.h) and against
// libjpeg-turbo as a decoder, in-process and as the djpeg program.
#include <gtest/gtest.h>

#include "support/reference_jpeg.h"
#include "support/shared_data.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <tuple>
#include <numeric>
#include <string>

#include <jpeglib.h>

#include "jpeg_reader.h"
#include "photos/cjpeg_internal.h"
#include "photos/cjpeg.h"
#include "platform/core/error.h"
#include "platform/imaging/picture_loader.h"

namespace zelvo {
namespace {

using testing::Psnr;

using ByteVec = std::vector<std::uint8_t>;
using imaging::Picture;

std::string Shared(const std::string& name) { return std::string(ZELVO_SHARED_DATA) + "/images/" + name; }

Picture Load(const std::string& name) {
    imaging::PictureLoader loader;
    auto p = loader.LoadPicture(Shared(name));
    if (!p) throw std::runtime_error(name + ": " + loader.LastError().Description);
    return std::move(*p);
}

Picture Noise(int w, int h, std::uint32_t seed = 1) {
    Picture p;
    p.Width = w, p.Height = h;
    p.Pixels.resize(std::size_t(w) * std::size_t(h) * 3);
    for (auto& b : p.Pixels) {
        seed ^= seed << 13, seed ^= seed >> 17, seed ^= seed << 5;
        b = std::uint8_t(seed);
    }
    return p;
}

struct Sampling {
    int h1, v1, h2, v2, h3, v3;
};

// Encodes a picture the way PictureToJpeg does, with the settings given.
ByteVec Encode(const Picture& p, Sampling s = {2, 2, 1, 1, 1, 1}, int quality = 75, cJpeg* keep = nullptr) {
    cImage image;
    int bitCount = 0;
    EXPECT_TRUE(image.CopyStdPicture(p, bitCount));
    cJpeg local;
    cJpeg& jpeg = keep ? *keep : local;
    jpeg.SetSamplingFrequencies(s.h1, s.v1, s.h2, s.v2, s.h3, s.v3);
    jpeg.Quality(quality);
    int result = -1;
    jpeg.SampleHDC(image.hdc(), image.Width(), image.Height(), 0, 0, result);
    EXPECT_EQ(result, 0);
    ByteVec bytes;
    jpeg.CreateArray(bytes);
    return bytes;
}

struct LibjpegResult {
    Picture picture;
    int warnings = 0;
    std::string error;
};

void ThrowOnError(j_common_ptr c) {
    char text[JMSG_LENGTH_MAX];
    (*c->err->format_message)(c, text);
    throw std::runtime_error(text);
}

LibjpegResult DecodeWithLibjpeg(const ByteVec& bytes) {
    LibjpegResult r;
    jpeg_decompress_struct d{};
    jpeg_error_mgr err{};
    d.err = jpeg_std_error(&err);
    err.error_exit = ThrowOnError;
    jpeg_create_decompress(&d);
    try {
        jpeg_mem_src(&d, bytes.data(), bytes.size());
        jpeg_read_header(&d, TRUE);
        d.out_color_space = JCS_RGB;
        jpeg_start_decompress(&d);
        r.picture.Width = int(d.output_width), r.picture.Height = int(d.output_height);
        r.picture.Pixels.resize(std::size_t(d.output_width) * d.output_height * 3);
        while (d.output_scanline < d.output_height) {
            JSAMPROW row = r.picture.Row(int(d.output_scanline));
            jpeg_read_scanlines(&d, &row, 1);
        }
        jpeg_finish_decompress(&d);
    } catch (const std::exception& e) {
        r.error = e.what();
    }
    r.warnings = int(err.num_warnings);
    jpeg_destroy_decompress(&d);
    return r;
}


// ---------------------------------------------------------------- tables

// Zigzag position of each natural (row * 8 + column) position of a block.
constexpr int kZigZag[64] = {0,  1,  5,  6,  14, 15, 27, 28, 2,  4,  7,  13, 16, 26, 29, 42,
                             3,  8,  12, 17, 25, 30, 41, 43, 9,  11, 18, 24, 31, 40, 44, 53,
                             10, 19, 23, 32, 39, 45, 52, 54, 20, 22, 33, 38, 46, 51, 55, 60,
                             21, 34, 37, 47, 50, 56, 59, 61, 35, 36, 48, 49, 57, 58, 62, 63};

int StepAt(const cJpeg& j, int slot, int row, int col) {
    return j.QuantizationSteps(slot)[std::size_t(kZigZag[row * 8 + col])];
}

// libjpeg-turbo's encoding with the closest settings, as the yardstick. Its
// quality scaling rounds ties up where ours rounds them to even, which alone
// moves PSNR by up to a dB on some pictures; so it is handed our tables.
ByteVec LibjpegEncode(const Picture& p) {
    const cJpeg defaults;
    unsigned steps[2][64];
    for (int slot = 0; slot < 2; ++slot)
        for (int n = 0; n < 64; ++n) steps[slot][n] = unsigned(StepAt(defaults, slot, n / 8, n % 8));
    return testing::LibjpegEncode(p, [&](jpeg_compress_struct& c) {
        jpeg_add_quant_table(&c, 0, steps[0], 100, TRUE);
        jpeg_add_quant_table(&c, 1, steps[1], 100, TRUE);
        c.optimize_coding = TRUE;
        c.dct_method = JDCT_FLOAT;
    });
}

TEST(CJpegQuality, StepsFollowTheScale) {
    struct Case {
        const char* name;
        int quality;
        int slot, row, col;
        int step;
    };
    const Case cases[] = {
        {"50 gives the base luminance table", 50, 0, 0, 0, 16},
        {"50 gives the base chrominance table", 50, 1, 7, 7, 99},
        {"75 halves: 16 -> 8", 75, 0, 0, 0, 8},
        {"75: 11 * 0.5 = 5.5 goes to the even 6", 75, 0, 0, 1, 6},
        {"75: 13 * 0.5 = 6.5 goes to the even 6, not 7", 75, 0, 2, 1, 6},
        {"75: 17 * 0.5 = 8.5 goes to the even 8", 75, 1, 0, 0, 8},
        {"75: 99 * 0.5 = 49.5 goes to the even 50", 75, 1, 7, 7, 50},
        {"16: scale 5000/16 = 312.5 goes to 312, so 51 -> 159", 16, 0, 0, 6, 159},
        {"10: scale 500, capped at 255", 10, 0, 7, 7, 255},
        {"10: 10 * 5 = 50", 10, 0, 0, 2, 50},
    };
    for (const Case& c : cases) {
        cJpeg j;
        j.Quality(c.quality);
        EXPECT_EQ(StepAt(j, c.slot, c.row, c.col), c.step) << c.name;
        EXPECT_EQ(j.Quality(), c.quality) << c.name;
    }
}

TEST(CJpegQuality, ExtremesAndIgnoredValues) {
    cJpeg j;
    EXPECT_EQ(j.Quality(), 75) << "the default";
    j.Quality(1);
    for (int slot : {0, 1})
        for (int q : j.QuantizationSteps(slot)) ASSERT_EQ(q, 255) << "quality 1: every step at the limit";
    j.Quality(100);
    for (int slot : {0, 1})
        for (int q : j.QuantizationSteps(slot)) ASSERT_EQ(q, 1) << "quality 100: every step 1";
    j.Quality(30);
    const auto before = j.QuantizationSteps(0);
    for (int ignored : {0, 101, -5}) {
        j.Quality(ignored);
        EXPECT_EQ(j.Quality(), 30) << ignored;
        EXPECT_EQ(j.QuantizationSteps(0), before) << ignored;
    }
}

// ---------------------------------------------------------------- settings

void ExpectRaises(const std::function<void()>& f, const std::string& text, const char* what) {
    try {
        f();
        ADD_FAILURE() << what << ": nothing raised";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 1) << what;
        EXPECT_EQ(e.description(), text) << what;
    }
}

TEST(CJpegSettings, SamplingValuesOutOfRangeRaiseAndChangeNothing) {
    const Sampling bad[] = {{0, 1, 1, 1, 1, 1}, {5, 1, 1, 1, 1, 1}, {1, 0, 0, 0, 0, 0},
                            {2, 2, 0, 1, 1, 1}, {2, 2, 1, 1, 1, 5}, {2, 2, 1, 1, 0, 0}};
    for (const Sampling& s : bad) {
        cJpeg j;
        j.SetSamplingFrequencies(1, 2, 1, 1, 1, 1);
        ExpectRaises([&] { j.SetSamplingFrequencies(s.h1, s.v1, s.h2, s.v2, s.h3, s.v3); }, kInvalidSampling,
                     "sampling");
        EXPECT_EQ(j.ComponentCount(), 3);
        EXPECT_EQ(j.GetComponent(0).V, 2) << "the old setup stays";
        EXPECT_EQ(j.VMax(), 2);
    }
    cJpeg grey;
    grey.SetSamplingFrequencies(3, 4, 0, 0, 0, 0);
    ASSERT_EQ(grey.ComponentCount(), 1);
    EXPECT_EQ(grey.GetComponent(0).H, 1) << "one component is always 1x1";
    EXPECT_EQ(grey.GetComponent(0).V, 1);
    EXPECT_EQ(grey.HMax(), 1);
}

TEST(CJpegSettings, CommentLength) {
    cJpeg j;
    j.Comment("first");
    std::string longest;
    for (int i = 0; i < 65535; ++i) longest += "\xC3\xA9";  // 65535 characters, twice as many bytes
    j.Comment(longest);
    EXPECT_EQ(j.Comment(), longest);
    ExpectRaises([&] { j.Comment(longest + "x"); }, kIllegalCommentLength, "comment");
    EXPECT_EQ(j.Comment(), longest) << "the old value stays";
}

TEST(CJpegSettings, NothingSampledOrNothingToSample) {
    cJpeg j;
    ByteVec bytes;
    ExpectRaises([&] { j.CreateArray(bytes); }, kBadHuffmanTable, "CreateArray before SampleHDC");
    int result = -1;
    j.SampleHDC(nullptr, 10, 10, 0, 0, result);
    EXPECT_EQ(result, 1);
    cImage image;
    image.Create(4, 4, 24);
    j.SampleHDC(image.hdc(), 0, 4, 0, 0, result);
    EXPECT_EQ(result, 1) << "no bitmap of width 0";
}

TEST(CJpegSettings, SidesLongerThanTheHeaderCanHoldAreRefused) {
    for (auto [w, h] : {std::pair{65536, 1}, std::pair{1, 65536}}) {
        cImage image;
        int bitCount = 0;
        ASSERT_TRUE(image.CopyStdPicture(Noise(w, h), bitCount));
        cJpeg j;
        int result = -1;
        j.SampleHDC(image.hdc(), w, h, 0, 0, result);
        ByteVec bytes;
        ExpectRaises([&] { j.CreateArray(bytes); }, kPictureTooLarge, "a side of 65536");
        EXPECT_TRUE(bytes.empty());
    }
    // The widest that fits is written whole (libjpeg stops short of it, at
    // 65500, so the frame header is read here).
    const ByteVec widest = Encode(Noise(65535, 1));
    const std::uint8_t sofMarker[] = {0xFF, 0xC0};
    auto sof = std::search(widest.begin(), widest.end(), std::begin(sofMarker), std::end(sofMarker));
    ASSERT_LT(sof + 9, widest.end());
    EXPECT_EQ((sof[5] << 8) | sof[6], 1);       // height
    EXPECT_EQ((sof[7] << 8) | sof[8], 65535);   // width
}

// ---------------------------------------------------------------- layout

TEST(CJpegLayout, DefaultFile) {
    const ByteVec bytes = Encode(Noise(21, 13));
    const auto segs = testing::SplitSegments(bytes);
    EXPECT_EQ(testing::MarkerNames(segs), "SOI APP0 DQT DQT SOF0 DHT DHT DHT DHT SOS EOI");
    EXPECT_EQ(segs[1].body, (ByteVec{'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0}));
    EXPECT_EQ(segs[2].body.size(), 65u);
    EXPECT_EQ(segs[2].body[0], 0);
    EXPECT_EQ(segs[3].body[0], 1);
    EXPECT_EQ(segs[4].body, (ByteVec{8, 0, 13, 0, 21, 3, 1, 0x22, 0, 2, 0x11, 1, 3, 0x11, 1}));
    std::vector<int> classes;
    for (int i = 5; i < 9; ++i) classes.push_back(segs[std::size_t(i)].body[0]);
    EXPECT_EQ(classes, (std::vector<int>{0x00, 0x10, 0x01, 0x11}));
    EXPECT_EQ(segs[9].body, (ByteVec{3, 1, 0x00, 2, 0x11, 3, 0x11, 0, 63, 0}));
    EXPECT_EQ(bytes, PictureToJpeg(Noise(21, 13))) << "PictureToJpeg runs the defaults";
}

TEST(CJpegLayout, OneComponent) {
    ZELVO_NEEDS_SHARED_IMAGES();
    const Picture p = Load("camera.pgm");
    const ByteVec bytes = Encode(p, {1, 1, 0, 0, 0, 0});
    const auto segs = testing::SplitSegments(bytes);
    EXPECT_EQ(testing::MarkerNames(segs), "SOI APP0 DQT SOF0 DHT DHT SOS EOI");
    EXPECT_EQ(segs[3].body, (ByteVec{8, 2, 0, 2, 0, 1, 1, 0x11, 0}));
    EXPECT_EQ(segs[6].body, (ByteVec{1, 1, 0x00, 0, 63, 0}));
    const auto decoded = DecodeWithLibjpeg(bytes);
    ASSERT_EQ(decoded.error, "");
    EXPECT_EQ(decoded.warnings, 0);
    EXPECT_GT(Psnr(p, decoded.picture), 34) << "grey keeps the luminance formula";
}

// Every scan decodes with exactly the blocks a decoder expects: real blocks
// equal the quantized blocks the encoder kept, padding blocks repeat the DC
// and have no AC, and each scan ends in at most 7 one bits.
void ExpectScansMatchBlocks(const Picture& p, Sampling s, const std::string& name, std::size_t scans) {
    cJpeg j;
    const ByteVec bytes = Encode(p, s, 75, &j);
    testing::DecodedJpeg d;
    try {
        d = testing::DecodeBaseline(bytes);
    } catch (const std::exception& e) {
        FAIL() << name << ": " << e.what();
    }
    ASSERT_EQ(d.scans.size(), scans) << name;
    std::vector<std::size_t> realSeen(d.components.size(), 0);
    for (const auto& scan : d.scans) {
        EXPECT_LT(scan.paddingBits, 8) << name;
        std::vector<int> lastDc(d.components.size(), 0);
        for (const auto& b : scan.blocks) {
            const auto& c = j.GetComponent(b.component);
            if (b.inside) {
                const std::int16_t* want = &c.Data[(std::size_t(b.row) * std::size_t(c.BlocksPerRow) + std::size_t(b.col)) * 64];
                ASSERT_TRUE(std::equal(want, want + 64, b.coef))
                    << name << ": component " << b.component << " block " << b.row << "," << b.col;
                ++realSeen[std::size_t(b.component)];
            } else {
                EXPECT_EQ(b.coef[0], lastDc[std::size_t(b.component)]) << name << ": a padding block repeats the DC";
                EXPECT_TRUE(std::all_of(b.coef + 1, b.coef + 64, [](int v) { return v == 0; })) << name;
            }
            lastDc[std::size_t(b.component)] = b.coef[0];
        }
    }
    for (std::size_t i = 0; i < d.components.size(); ++i)
        EXPECT_EQ(realSeen[i], j.GetComponent(int(i)).Data.size() / 64) << name << ": every block coded once";
}

TEST(CJpegScans, BlocksAndDummies) {
    struct Case {
        const char* name;
        int w, h;
        Sampling s;
        std::size_t scans;
    };
    const Case cases[] = {
        {"1x1: one MCU, 1 real luma block and 3 dummies", 1, 1, {2, 2, 1, 1, 1, 1}, 1},
        {"width 17: last MCU has one real and one dummy block per row", 17, 16, {2, 2, 1, 1, 1, 1}, 1},
        {"33x17 4:2:0", 33, 17, {2, 2, 1, 1, 1, 1}, 1},
        {"4:4:4", 19, 11, {1, 1, 1, 1, 1, 1}, 1},
        {"4:2:2", 37, 9, {2, 1, 1, 1, 1, 1}, 1},
        {"4x1 luma", 45, 20, {4, 1, 1, 1, 1, 1}, 1},
        {"3x3 luma, 2x2 Cb", 50, 29, {3, 3, 2, 2, 1, 1}, 2},
        {"4x4 luma scans alone, then Cb and Cr", 70, 40, {4, 4, 1, 1, 1, 1}, 2},
        {"2x2 each: 8 blocks, then Cr alone", 30, 30, {2, 2, 2, 2, 2, 2}, 2},
        {"one component", 23, 9, {1, 1, 0, 0, 0, 0}, 1},
    };
    for (const Case& c : cases) ExpectScansMatchBlocks(Noise(c.w, c.h, 7), c.s, c.name, c.scans);
}

TEST(CJpegScans, ChromaOfATinyPictureIsNotStretched) {
    // A plane whose size rounded to 8 equals the plane's before it samples
    // the bitmap as that one left it. In a picture of at most 8x8 pixels the
    // chroma planes round like the luma plane, so they hold the full-size
    // picture, exactly as a 4:4:4 encoding would.
    struct Case {
        const char* name;
        int w, h;
        bool sameAs444;
    };
    const Case cases[] = {{"6x6", 6, 6, true}, {"8x8", 8, 8, true}, {"16x16", 16, 16, false}, {"9x8", 9, 8, false}};
    for (const Case& c : cases) {
        const Picture p = Noise(c.w, c.h, 3);
        cJpeg sub, full;
        Encode(p, {2, 2, 1, 1, 1, 1}, 75, &sub);
        Encode(p, {1, 1, 1, 1, 1, 1}, 75, &full);
        for (int comp : {1, 2})
            EXPECT_EQ(sub.GetComponent(comp).Data == full.GetComponent(comp).Data, c.sameAs444) << c.name << " " << comp;
    }
}

TEST(CJpegScans, StuffingAfterEveryFF) {
    ZELVO_NEEDS_SHARED_IMAGES();
    // Noise gives long codes and many FF bytes in the coded data.
    const ByteVec bytes = Encode(Load("gen_17x9_noise.ppm"), {2, 2, 1, 1, 1, 1}, 100);
    const auto segs = testing::SplitSegments(bytes);
    int ffs = 0;
    for (const auto& s : segs) {
        for (std::size_t i = 0; i < s.data.size(); ++i)
            if (s.data[i] == 0xFF) {
                ASSERT_LT(i + 1, s.data.size());
                EXPECT_EQ(s.data[i + 1], 0x00);
                ++ffs;
            }
    }
    EXPECT_GT(ffs, 0) << "the image is meant to produce FF bytes";
}

// Optimal tables are canonical, at most 16 bits, and never hold an all-ones
// code: the Kraft sum stays below 1. Gives the longest code length used.
int ExpectGoodTables(const ByteVec& bytes, const std::string& name) {
    const auto d = testing::DecodeBaseline(bytes);
    int longest = 0;
    for (const auto& [key, t] : d.tables) {
        std::uint32_t kraft = 0;
        int total = 0;
        for (int l = 1; l <= 16; ++l) {
            kraft += std::uint32_t(t.bits[l]) << (16 - l), total += t.bits[l];
            if (t.bits[l]) longest = std::max(longest, l);
        }
        EXPECT_LT(kraft, 1u << 16) << name << " table " << key << ": an all-ones code";
        EXPECT_GT(total, 0) << name;
        std::vector<std::uint8_t> sorted = t.values;
        std::sort(sorted.begin(), sorted.end());
        EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end()) << name << ": a symbol twice";
        if (key < 16) {
            EXPECT_LE(sorted.back(), 11) << name << ": DC categories stop at 11";
        }
    }
    return longest;
}

// The code length of each symbol of a built table.
std::map<int, int> Lengths(const cJpeg::HuffmanTable& t) {
    std::map<int, int> out;
    for (int s = 0; s < 256; ++s)
        if (t.Size[std::size_t(s)]) out[s] = t.Size[std::size_t(s)];
    return out;
}

TEST(CJpegHuffman, OptimalTables) {
    using Counts = std::array<std::int64_t, 256>;
    {
        // Two symbols and the reserved one: the most frequent gets 1 bit,
        // the other 2, and the reserved symbol's all-ones code is dropped.
        Counts c{};
        c[0] = 10, c[5] = 3;
        cJpeg::HuffmanTable t;
        jpeg_detail::MakeOptimalTable(c, 255, t);
        EXPECT_EQ(Lengths(t), (std::map<int, int>{{0, 1}, {5, 2}}));
        EXPECT_EQ(t.Code[0], 0b0);
        EXPECT_EQ(t.Code[5], 0b10) << "11 stays unused";
    }
    {
        // Equal counts: HUFFVAL lists one size by symbol number.
        Counts c{};
        for (int s : {9, 3, 7, 1}) c[std::size_t(s)] = 4;
        cJpeg::HuffmanTable t;
        jpeg_detail::MakeOptimalTable(c, 255, t);
        EXPECT_EQ(t.HuffVal, (std::vector<std::uint8_t>{1, 3, 7, 9}));
    }
    {
        // Fibonacci counts would give codes of up to 31 bits; Figure K.3
        // brings them to 16, and the table stays complete and valid.
        Counts c{};
        std::int64_t a = 1, b = 1;
        for (int s = 0; s < 30; ++s) c[std::size_t(s)] = a, std::tie(a, b) = std::pair(b, a + b);
        cJpeg::HuffmanTable t;
        jpeg_detail::MakeOptimalTable(c, 255, t);
        const auto lengths = Lengths(t);
        EXPECT_EQ(lengths.size(), 30u);
        std::uint32_t kraft = 0;
        for (auto [s, l] : lengths) {
            EXPECT_LE(l, 16) << s;
            kraft += 1u << (16 - l);
        }
        EXPECT_LT(kraft, 1u << 16) << "no all-ones code";
        for (int sym = 1; sym < 29; ++sym)  // symbols 0 and 1 share a count
            EXPECT_GE(lengths.at(sym), lengths.at(sym + 1)) << "a more frequent symbol never has a longer code";
        EXPECT_GT(t.Bits[16], 0) << "the deepest codes were brought to 16 bits";
        // Codes are canonical: consecutive within one size.
        std::vector<std::pair<int, int>> bySize;
        for (std::uint8_t s : t.HuffVal) bySize.emplace_back(t.Size[s], t.Code[s]);
        for (std::size_t i = 1; i < bySize.size(); ++i) {
            const auto [l0, c0] = bySize[i - 1];
            const auto [l1, c1] = bySize[i];
            EXPECT_EQ(c1, (c0 + 1) << (l1 - l0)) << i;
        }
    }
    {
        Counts c{};
        cJpeg::HuffmanTable t;
        ExpectRaises([&] { jpeg_detail::MakeOptimalTable(c, 255, t); }, kBadHuffmanTable, "no symbol");
        c[12] = 1;
        ExpectRaises([&] { jpeg_detail::MakeOptimalTable(c, 11, t); }, kBadHuffmanTable, "DC category 12");
    }
}

// ---------------------------------------------------------------- round trip

TEST(CJpegRoundTrip, SharedImagesDecodeCloseToLibjpegTurbo) {
    ZELVO_NEEDS_SHARED_IMAGES();
    // Our file may decode at most 0.3 dB below libjpeg-turbo's with the same
    // tables and sampling. The small pictures with odd sizes catch chroma
    // samples that drift from where a decoder puts them.
    const char* files[] = {"astronaut.ppm", "camera.ppm", "camera.pgm", "kodim04.ppm", "kodim13.ppm",
                           "kodim15.ppm", "kodim18.ppm", "kodim23.ppm", "kodim23.png", "gen_640x480_gradient.ppm",
                           "gen_1x1.ppm", "gen_8x8_checker.ppm", "gen_16x16_quads.ppm", "gen_17x9_noise.ppm",
                           "gen_33x17_edges.ppm", "testorig.ppm"};
    for (const char* file : files) {
        const Picture p = Load(file);
        const ByteVec ours = PictureToJpeg(p);
        const auto decoded = DecodeWithLibjpeg(ours);
        ASSERT_EQ(decoded.error, "") << file;
        EXPECT_EQ(decoded.warnings, 0) << file;
        const double reference = Psnr(p, DecodeWithLibjpeg(LibjpegEncode(p)).picture);
        EXPECT_GT(Psnr(p, decoded.picture), reference - 0.3) << file;
        ExpectGoodTables(ours, file);
    }
}

TEST(CJpegRoundTrip, SamplingSetupsDecode) {
    ZELVO_NEEDS_SHARED_IMAGES();
    const Picture p = Load("kodim23.ppm");
    const Sampling setups[] = {{1, 1, 1, 1, 1, 1}, {2, 1, 1, 1, 1, 1}, {1, 2, 1, 1, 1, 1}, {2, 2, 1, 1, 1, 1},
                               {4, 1, 1, 1, 1, 1}, {4, 2, 2, 1, 2, 1}, {4, 4, 1, 1, 1, 1}, {2, 2, 2, 2, 2, 2}};
    for (const Sampling& s : setups) {
        const auto decoded = DecodeWithLibjpeg(Encode(p, s));
        const std::string name = std::to_string(s.h1) + "x" + std::to_string(s.v1) + "," + std::to_string(s.h2) +
                                 "x" + std::to_string(s.v2) + "," + std::to_string(s.h3) + "x" + std::to_string(s.v3);
        ASSERT_EQ(decoded.error, "") << name;
        EXPECT_EQ(decoded.warnings, 0) << name;
        EXPECT_GT(Psnr(p, decoded.picture), 30) << name;
    }
}

TEST(CJpegRoundTrip, DjpegReadsOurFiles) {
    ZELVO_NEEDS_SHARED_IMAGES();
    if (std::system("command -v djpeg >/dev/null 2>&1") != 0) GTEST_SKIP() << "djpeg is not installed (libjpeg-turbo-progs)";
    const auto dir = std::filesystem::temp_directory_path() / ("zelvo_djpeg_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    for (const char* file : {"gen_1x1.ppm", "gen_17x9_noise.ppm", "gen_33x17_edges.ppm", "kodim04.ppm", "camera.pgm"}) {
        const ByteVec bytes = PictureToJpeg(Load(file));
        const auto jpg = dir / "in.jpg";
        std::ofstream(jpg, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
        const std::string cmd = "djpeg -outfile '" + (dir / "out.ppm").string() + "' '" + jpg.string() + "' 2>&1";
        std::string messages;
        FILE* f = popen(cmd.c_str(), "r");
        ASSERT_NE(f, nullptr);
        char buf[256];
        while (std::fgets(buf, sizeof buf, f)) messages += buf;
        EXPECT_EQ(pclose(f), 0) << file;
        EXPECT_EQ(messages, "") << file << ": djpeg warned";
        imaging::PictureLoader loader;
        const auto back = loader.LoadPicture((dir / "out.ppm").string());
        ASSERT_TRUE(back) << file;
        EXPECT_GT(Psnr(Load(file), *back), 12) << file;
    }
    std::filesystem::remove_all(dir);
}

// ---------------------------------------------------------------- lifecycle

TEST(CJpegLifecycle, QualityAfterSamplingLeavesTheBlocks) {
    ZELVO_NEEDS_SHARED_IMAGES();
    cJpeg j;
    const Picture p = Load("gen_16x16_quads.ppm");
    const ByteVec first = Encode(p, {2, 2, 1, 1, 1, 1}, 75, &j);
    const auto blocks = j.GetComponent(0).Data;
    j.Quality(20);
    ByteVec again;
    j.CreateArray(again);
    EXPECT_EQ(j.GetComponent(0).Data, blocks);
    EXPECT_EQ(again.size(), first.size()) << "only the stored table changes";
    EXPECT_NE(again, first);
    j.SetSamplingFrequencies(2, 2, 1, 1, 1, 1);
    EXPECT_TRUE(j.GetComponent(0).Data.empty()) << "new sampling drops the blocks";
}

TEST(CJpegLifecycle, SaveFile) {
    ZELVO_NEEDS_SHARED_IMAGES();
    const auto dir = std::filesystem::temp_directory_path() / ("zelvo_save_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    const Picture p = Load("gen_16x16_quads.ppm");
    cJpeg j;
    const ByteVec expected = Encode(p, {2, 2, 1, 1, 1, 1}, 75, &j);
    int result = -1;
    j.SaveFile("", result);
    EXPECT_EQ(result, 1);
    const auto existing = dir / "existing.jpg";
    std::ofstream(existing) << "keep me";
    j.SaveFile(existing.string(), result);
    EXPECT_EQ(result, 2);
    std::ifstream in(existing);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "keep me");
    const auto fresh = dir / "fresh.jpg";
    j.SaveFile(fresh.string(), result);
    EXPECT_EQ(result, 0);
    std::ifstream f(fresh, std::ios::binary);
    EXPECT_EQ(ByteVec(std::istreambuf_iterator<char>(f), {}), expected);
    try {
        j.SaveFile((dir / "no" / "such" / "folder.jpg").string(), result);
        ADD_FAILURE() << "writing into a missing folder should raise";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 75);
    }
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace zelvo
