#include "photos/area_resample.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace zelvo {

namespace {

// The source pixels under one output pixel and the share of each.
struct Taps {
    std::vector<int> first;       // per output pixel: index of its first source pixel
    std::vector<int> count;       // per output pixel: how many source pixels it covers
    std::vector<float> weight;    // per output pixel, `count` weights summing to 1
    std::vector<int> offset;      // per output pixel: where its weights start
};

// `span` source pixels are spread over `dstSize` output pixels; the part of
// the span beyond the source counts as its last pixel.
Taps MakeTaps(int srcSize, double span, int dstSize) {
    Taps t;
    t.first.resize(std::size_t(dstSize));
    t.count.resize(std::size_t(dstSize));
    t.offset.resize(std::size_t(dstSize));
    const double scale = span / dstSize;
    for (int x = 0; x < dstSize; ++x) {
        const double a = x * scale, b = (x + 1) * scale;
        int i0 = std::min(srcSize - 1, int(std::floor(a)));
        int i1 = std::min(srcSize, int(std::ceil(b)));
        if (i1 <= i0) i1 = i0 + 1;
        t.first[std::size_t(x)] = i0;
        t.offset[std::size_t(x)] = int(t.weight.size());
        int n = 0;
        for (int i = i0; i < i1; ++i) {
            // The last source pixel also takes whatever of the span lies
            // beyond the source.
            const double end = i + 1 == srcSize ? std::max<double>(b, i + 1) : i + 1;
            const double cover = std::min<double>(b, end) - std::max<double>(a, i);
            if (cover <= 0) continue;
            if (n == 0) t.first[std::size_t(x)] = i;
            t.weight.push_back(float(cover / scale));
            ++n;
        }
        t.count[std::size_t(x)] = n;
    }
    return t;
}

// Halving in both directions, the common case of chroma subsampling: each
// output is the mean of a 2x2 square. Gives the same values as the general
// path (whose float sums of halves and quarters are exact here), faster.
void Halve(const RgbView& src, int dstWidth, int dstHeight, std::uint8_t* dst, std::ptrdiff_t dstStride) {
    for (int y = 0; y < dstHeight; ++y) {
        const std::uint8_t* a = src.Row(2 * y);
        const std::uint8_t* b = src.Row(2 * y + 1);
        std::uint8_t* out = dst + dstStride * y;
        for (int x = 0; x < dstWidth; ++x, a += 6, b += 6, out += 3)
            for (int c = 0; c < 3; ++c) out[c] = std::uint8_t((a[c] + a[c + 3] + b[c] + b[c + 3] + 2) >> 2);
    }
}

}  // namespace

void AreaResample(const RgbView& src, int dstWidth, int dstHeight, std::uint8_t* dst, std::ptrdiff_t dstStride) {
    AreaResample(src, src.width, src.height, dstWidth, dstHeight, dst, dstStride);
}

void AreaResample(const RgbView& src, double spanWidth, double spanHeight, int dstWidth, int dstHeight,
                  std::uint8_t* dst, std::ptrdiff_t dstStride) {
    if (src.width == 2 * dstWidth && src.height == 2 * dstHeight && spanWidth == src.width &&
        spanHeight == src.height) {
        Halve(src, dstWidth, dstHeight, dst, dstStride);
        return;
    }
    const Taps tx = MakeTaps(src.width, spanWidth, dstWidth);
    const Taps ty = MakeTaps(src.height, spanHeight, dstHeight);
    const std::size_t rowFloats = std::size_t(dstWidth) * 3;

    // Source rows are first narrowed to the output width; a row shared by
    // two output rows (at a boundary, or when enlarging) is narrowed once.
    std::vector<float> narrowed(rowFloats), acc(rowFloats);
    int narrowedRow = -1;
    auto narrow = [&](int y) {
        if (y == narrowedRow) return;
        const std::uint8_t* in = src.Row(y);
        float* out = narrowed.data();
        for (int x = 0; x < dstWidth; ++x, out += 3) {
            const float* w = &tx.weight[std::size_t(tx.offset[std::size_t(x)])];
            const std::uint8_t* p = in + std::size_t(tx.first[std::size_t(x)]) * 3;
            float r = 0, g = 0, b = 0;
            for (int k = 0, n = tx.count[std::size_t(x)]; k < n; ++k, p += 3) {
                r += w[k] * p[0];
                g += w[k] * p[1];
                b += w[k] * p[2];
            }
            out[0] = r, out[1] = g, out[2] = b;
        }
        narrowedRow = y;
    };

    for (int y = 0; y < dstHeight; ++y) {
        std::fill(acc.begin(), acc.end(), 0.0f);
        const float* w = &ty.weight[std::size_t(ty.offset[std::size_t(y)])];
        for (int k = 0, n = ty.count[std::size_t(y)]; k < n; ++k) {
            narrow(ty.first[std::size_t(y)] + k);
            const float wk = w[k];
            for (std::size_t i = 0; i < rowFloats; ++i) acc[i] += wk * narrowed[i];
        }
        std::uint8_t* out = dst + dstStride * y;
        for (std::size_t i = 0; i < rowFloats; ++i) {
            const float v = acc[i] + 0.5f;
            out[i] = std::uint8_t(v <= 0 ? 0 : v >= 255 ? 255 : int(v));
        }
    }
}

}  // namespace zelvo
