// cImage: layout, copies, and the geometric and colour operations.
#include <gtest/gtest.h>

#include "photos/area_resample.h"
#include "photos/cimage.h"

namespace zelvo {
namespace {

using imaging::Picture;

// A picture given as rows of colours 0xRRGGBB.
Picture Pic(const std::vector<std::vector<std::uint32_t>>& rows) {
    Picture p;
    p.Height = int(rows.size());
    p.Width = int(rows[0].size());
    for (const auto& row : rows)
        for (std::uint32_t c : row) p.Pixels.insert(p.Pixels.end(), {std::uint8_t(c >> 16), std::uint8_t(c >> 8), std::uint8_t(c)});
    return p;
}

// The image's pixels as rows of 0xRRGGBB, top row first.
std::vector<std::vector<std::uint32_t>> Rows(const cImage& img) {
    std::vector<std::vector<std::uint32_t>> out;
    std::vector<std::uint8_t> rgb(std::size_t(img.Width()) * 3);
    for (int y = 0; y < img.Height(); ++y) {
        img.ReadRowRgb(y, rgb.data());
        std::vector<std::uint32_t> row;
        for (int x = 0; x < img.Width(); ++x)
            row.push_back(std::uint32_t(rgb[3 * std::size_t(x)]) << 16 | std::uint32_t(rgb[3 * std::size_t(x) + 1]) << 8 | rgb[3 * std::size_t(x) + 2]);
        out.push_back(row);
    }
    return out;
}

std::unique_ptr<cImage> Image(const Picture& p, int bitCount = 0) {
    auto img = std::make_unique<cImage>();
    EXPECT_TRUE(img->CopyStdPicture(p, bitCount));
    return img;
}

const Picture k3x2 = Pic({{0x000001, 0x000002, 0x000003}, {0x000004, 0x000005, 0x000006}});

TEST(CImage, BytesPerScanLine) {
    struct Case {
        int bitCount, width, bytes;
    };
    const Case cases[] = {{1, 33, 8}, {1, 1, 4}, {1, 32, 4}, {4, 9, 8}, {4, 8, 4}, {8, 5, 8}, {8, 4, 4}, {24, 3, 12}, {24, 1, 4}, {24, 4, 12}};
    for (const Case& c : cases) {
        cImage img;
        ASSERT_TRUE(img.Create(c.width, 2, c.bitCount));
        EXPECT_EQ(img.BytesPerScanLine(), c.bytes) << c.bitCount << " bits, " << c.width << " wide";
    }
}

TEST(CImage, CreateAndRelease) {
    cImage img;
    EXPECT_EQ(img.hdc(), nullptr);
    ASSERT_TRUE(img.Create(5, 3, 4));
    EXPECT_EQ(img.hdc(), &img);
    EXPECT_EQ(img.ColourTable()[15].Red, 255) << "grey ramp";
    EXPECT_EQ(img.ColourTable()[5].Green, 85) << "5 * 255 / 15";
    ASSERT_TRUE(img.Create(7, 2, 24)) << "a second Create releases the first image";
    EXPECT_EQ(img.Width(), 7);
    EXPECT_EQ(img.BitCount(), 24);
    for (int bad : {0, 2, 16, 32}) {
        EXPECT_FALSE(img.Create(4, 4, bad)) << bad;
        EXPECT_EQ(img.hdc(), nullptr) << bad;
        EXPECT_EQ(img.Width(), 0);
    }
    EXPECT_FALSE(img.Create(0, 4, 24));
    EXPECT_FALSE(img.Create(100000, 100000, 24)) << "beyond the pixel limit";
}

TEST(CImage, CopyStdPictureIsABottomUpBgrDib) {
    cImage img;
    int bitCount = 0;
    ASSERT_TRUE(img.CopyStdPicture(k3x2, bitCount));
    EXPECT_EQ(bitCount, 24) << "the picture's own depth is given back";
    const std::uint8_t* bits = img.DIBitsPtr();
    EXPECT_EQ(bits[0], 4) << "the first stored row is the bottom one, blue first";
    EXPECT_EQ(bits[12], 1) << "rows are padded to 12 bytes";
    EXPECT_EQ(Rows(img), (std::vector<std::vector<std::uint32_t>>{{1, 2, 3}, {4, 5, 6}}));

    bitCount = 32;
    EXPECT_FALSE(img.CopyStdPicture(k3x2, bitCount));
    EXPECT_EQ(img.hdc(), nullptr) << "a depth Create doesn't know leaves the object empty";
    EXPECT_EQ(img.Height(), 0);

    bitCount = 1;
    ASSERT_TRUE(img.CopyStdPicture(Pic({{0xF0F0F0, 0x101010, 0xFF0000}}), bitCount));
    EXPECT_EQ(Rows(img), (std::vector<std::vector<std::uint32_t>>{{0xFFFFFF, 0x000000, 0x000000}}))
        << "each colour goes to the nearest of black and white";
}

TEST(CImage, RotateAndMirror) {
    using R = std::vector<std::vector<std::uint32_t>>;
    struct Case {
        const char* name;
        std::unique_ptr<cImage> (*op)(const cImage&);
        R expected;
    };
    const Case cases[] = {
        {"Rotate 90: top edge to the left side, bottom up", [](const cImage& i) { return i.Rotate(90); }, R{{3, 6}, {2, 5}, {1, 4}}},
        {"Rotate 450 = 90", [](const cImage& i) { return i.Rotate(450); }, R{{3, 6}, {2, 5}, {1, 4}}},
        {"Rotate 180", [](const cImage& i) { return i.Rotate(180); }, R{{6, 5, 4}, {3, 2, 1}}},
        {"Rotate 270: top edge to the right side", [](const cImage& i) { return i.Rotate(270); }, R{{4, 1}, {5, 2}, {6, 3}}},
        {"Rotate -90 = 270", [](const cImage& i) { return i.Rotate(-90); }, R{{4, 1}, {5, 2}, {6, 3}}},
        {"Mirror vertical", [](const cImage& i) { return i.Mirror(true); }, R{{4, 5, 6}, {1, 2, 3}}},
        {"Mirror horizontal", [](const cImage& i) { return i.Mirror(false); }, R{{3, 2, 1}, {6, 5, 4}}},
    };
    const auto img = Image(k3x2);
    for (const Case& c : cases) {
        const auto out = c.op(*img);
        ASSERT_TRUE(out) << c.name;
        EXPECT_EQ(Rows(*out), c.expected) << c.name;
    }
    for (int angle : {45, 0, 360, -45, 91}) EXPECT_EQ(img->Rotate(angle), nullptr) << angle;
    EXPECT_EQ(cImage().Rotate(90), nullptr) << "an empty image";

    // Low depths keep their indexes and palette through a rotation.
    int four = 4;
    cImage grey;
    ASSERT_TRUE(grey.CopyStdPicture(Pic({{0x000000, 0x111111}, {0x222222, 0xFFFFFF}}), four));
    EXPECT_EQ(Rows(*grey.Rotate(180)), (R{{0xFFFFFF, 0x222222}, {0x111111, 0x000000}}));
}

TEST(CImage, ResampleAveragesAreas) {
    using R = std::vector<std::vector<std::uint32_t>>;
    const auto img = Image(Pic({{0x000000, 0x0000C8, 0x640000, 0x646464},
                                {0x0000C8, 0x000000, 0x646464, 0x640000}}));
    auto half = img->Resample(2, 1);
    ASSERT_TRUE(half);
    EXPECT_EQ(Rows(*half), (R{{0x000064, 0x643232}})) << "each output pixel the mean of its 2x2";
    // 3 -> 2: the middle pixel is shared half and half.
    const auto row = Image(Pic({{0x000000, 0x5A5A5A, 0xB4B4B4}}));
    EXPECT_EQ(Rows(*row->Resample(2, 1)), (R{{0x1E1E1E, 0x969696}})) << "(0 + 90/2) / 1.5 = 30, (90/2 + 180) / 1.5 = 150";
    EXPECT_EQ(Rows(*img->Resample(4, 2)), Rows(*img)) << "the same size is a copy";
    EXPECT_EQ(Rows(*row->Resample(6, 1)), (R{{0, 0, 0x5A5A5A, 0x5A5A5A, 0xB4B4B4, 0xB4B4B4}})) << "enlarging repeats";
    EXPECT_EQ(img->Resample(0, 3), nullptr);
}

// Chroma subsampling of an odd size: 3 pixels by 3 rows spread over a span
// of 4 x 4 onto 2 x 2 samples; the last sample is the edge pixel alone.
TEST(AreaResample, SpanBeyondTheSourceRepeatsItsEdge) {
    const std::uint8_t px[3 * 3 * 3] = {10, 10, 10, 30, 30, 30, 200, 200, 200,   //
                                        10, 10, 10, 30, 30, 30, 200, 200, 200,   //
                                        90, 90, 90, 90, 90, 90, 0,   0,   0};
    std::uint8_t out[2 * 2 * 3];
    AreaResample(RgbView{px, 9, 3, 3}, 4.0, 4.0, 2, 2, out, 6);
    EXPECT_EQ(std::vector<int>(out, out + 12), (std::vector<int>{20, 20, 20, 200, 200, 200, 90, 90, 90, 0, 0, 0}));
}

TEST(CImage, GreyscaleAndCopies) {
    const auto img = Image(Pic({{0xC86400, 0xFFFFFF}}));
    const auto grey = img->Greyscale();
    ASSERT_TRUE(grey);
    EXPECT_EQ(grey->BitCount(), 8);
    EXPECT_EQ(Rows(*grey), (std::vector<std::vector<std::uint32_t>>{{0x646464, 0xFFFFFF}})) << "the nearest grey";

    cImage copy;
    ASSERT_TRUE(copy.CopyHDC(grey->hdc(), 2, 1, 0, 0, 0));
    EXPECT_EQ(copy.BitCount(), 8) << "256 colours in the source's table";
    EXPECT_EQ(Rows(copy), Rows(*grey));
    ASSERT_TRUE(copy.CopyHDC(img->hdc(), 1, 1, 0, 1, 0));
    EXPECT_EQ(copy.BitCount(), 24) << "no table in the source";
    EXPECT_EQ(Rows(copy), (std::vector<std::vector<std::uint32_t>>{{0xFFFFFF}})) << "copied from (1, 0)";
    EXPECT_FALSE(copy.CopyHDC(nullptr, 1, 1, 0, 0, 0));

    cImage target;
    ASSERT_TRUE(target.Create(3, 2, 24));
    img->PaintHDC(&target, 2, 1);
    EXPECT_EQ(Rows(target), (std::vector<std::vector<std::uint32_t>>{{0, 0, 0}, {0, 0, 0xC86400}})) << "clipped at the edge";
    img->PaintHDC(&target, 0, 0, kSrcInvert);
    EXPECT_EQ(Rows(target)[0], (std::vector<std::uint32_t>{0xC86400, 0xFFFFFF, 0}));
    img->PaintHDC(&target, -1, 1, kSrcPaint);
    EXPECT_EQ(Rows(target)[1], (std::vector<std::uint32_t>{0xFFFFFF, 0, 0xC86400}))
        << "only the source's second pixel lands, at the left edge";
}

}  // namespace
}  // namespace zelvo
