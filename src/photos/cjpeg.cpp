// cJpeg: settings, quantization tables, saving, and PictureToJpeg.
#include "photos/cjpeg.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "photos/cjpeg_internal.h"
#include "platform/core/error.h"

namespace zelvo {

using namespace jpeg_detail;

namespace {

// ITU T.81 Table K.1 and K.2, row by row.
constexpr std::array<int, 64> kLuminance = {
    16, 11, 10, 16, 24,  40,  51,  61,  12, 12, 14, 19, 26,  58,  60,  55,  //
    14, 13, 16, 24, 40,  57,  69,  56,  14, 17, 22, 29, 51,  87,  80,  62,  //
    18, 22, 37, 56, 68,  109, 103, 77,  24, 35, 55, 64, 81,  104, 113, 92,  //
    49, 64, 78, 87, 103, 121, 120, 101, 72, 92, 95, 98, 112, 100, 103, 99};
constexpr std::array<int, 64> kChrominance = {
    17, 18, 24, 47, 99, 99, 99, 99, 18, 21, 26, 66, 99, 99, 99, 99,  //
    24, 26, 56, 99, 99, 99, 99, 99, 47, 66, 99, 99, 99, 99, 99, 99,  //
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,  //
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99};

// The base tables in zigzag order, as they are kept.
std::array<int, 64> InZigZag(const std::array<int, 64>& natural) {
    std::array<int, 64> z{};
    for (int p = 0; p < 64; ++p) z[std::size_t(ZigZag[std::size_t(p)])] = natural[std::size_t(p)];
    return z;
}

[[noreturn]] void Raise(const char* text) { throw Error(1, text, "cJpeg"); }

std::size_t CharacterCount(const std::string& utf8) {
    std::size_t n = 0;
    for (unsigned char c : utf8) n += (c & 0xC0) != 0x80;
    return n;
}

}  // namespace

cJpeg::cJpeg() {
    SetSamplingFrequencies(2, 2, 1, 1, 1, 1);
    Quality(75);
}

void cJpeg::Quality(int q) {
    if (q < 1 || q > 100) return;
    // Ties go to the even integer, in the scale (5000 / 16 = 312.5 gives 312)
    // as in the steps.
    const double scale = q >= 50 ? 200 - 2 * q : std::nearbyint(5000.0 / q);
    const std::array<int, 64> base[2] = {InZigZag(kLuminance), InZigZag(kChrominance)};
    for (int slot = 0; slot < 2; ++slot)
        for (int z = 0; z < 64; ++z) {
            const double step = std::nearbyint(base[slot][std::size_t(z)] * scale / 100.0);
            steps_[std::size_t(slot)][std::size_t(z)] = int(std::clamp(step, 1.0, 255.0));
        }
    quality_ = q;
    MakeDivisors();
}

void cJpeg::MakeDivisors() {
    const int limit = precision_ == 12 ? 65535 : 255;
    for (int slot = 0; slot < 2; ++slot)
        for (int i = 0; i < 8; ++i)
            for (int j = 0; j < 8; ++j) {
                const int z = ZigZag[std::size_t(i * 8 + j)];
                const int q = steps_[std::size_t(slot)][std::size_t(z)];
                if (q < 1 || q > limit) Raise(kBadQuantizationTable);
                divisors_[std::size_t(slot)][std::size_t(z)] = float(AanScale[std::size_t(i)] * AanScale[std::size_t(j)] / q);
            }
}

void cJpeg::SetSamplingFrequencies(int H1, int V1, int H2, int V2, int H3, int V3) {
    auto inRange = [](int f) { return f >= 1 && f <= 4; };
    if (!inRange(H1) || !inRange(V1)) Raise(kInvalidSampling);
    const bool grey = H2 == 0 && V2 == 0 && H3 == 0 && V3 == 0;
    if (!grey && (!inRange(H2) || !inRange(V2) || !inRange(H3) || !inRange(V3))) Raise(kInvalidSampling);
    components_.clear();
    if (grey) {
        components_.push_back(Component{1, 1, 1, 0, {}, 0, 0});
    } else {
        components_.push_back(Component{1, H1, V1, 0, {}, 0, 0});
        components_.push_back(Component{2, H2, V2, 1, {}, 0, 0});
        components_.push_back(Component{3, H3, V3, 1, {}, 0, 0});
    }
    hMax_ = vMax_ = 1;
    for (const Component& c : components_) hMax_ = std::max(hMax_, c.H), vMax_ = std::max(vMax_, c.V);
}

void cJpeg::Comment(const std::string& text) {
    if (CharacterCount(text) > 65535) Raise(kIllegalCommentLength);
    comment_ = text;
}

void cJpeg::SaveFile(const std::string& FileName, int& Result) {
    if (FileName.empty()) {
        Result = 1;
        return;
    }
    std::error_code ec;
    if (std::filesystem::exists(FileName, ec)) {
        Result = 2;
        return;
    }
    std::vector<std::uint8_t> bytes;
    CreateArray(bytes);
    // "x": the file is made here or not at all, so a file that appeared
    // since the check above is not overwritten either.
    std::FILE* f = std::fopen(FileName.c_str(), "wbx");
    if (!f) {
        if (std::filesystem::exists(FileName, ec)) {
            Result = 2;
            return;
        }
        throw Error(75, "Path/File access error", "cJpeg");
    }
    const bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    if (std::fclose(f) != 0 || !ok) throw Error(75, "Path/File access error", "cJpeg");
    Result = 0;
}

std::vector<std::uint8_t> PictureToJpeg(const imaging::Picture& Picture) {
    cImage image;
    int bitCount = 0;
    image.CopyStdPicture(Picture, bitCount);
    cJpeg jpeg;
    int result = 0;
    jpeg.SampleHDC(image.hdc(), image.Width(), image.Height(), 0, 0, result);
    std::vector<std::uint8_t> bytes;
    jpeg.CreateArray(bytes);
    return bytes;
}

}  // namespace zelvo
