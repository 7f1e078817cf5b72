// cJpeg::SampleHDC: sampling, colour conversion, the forward DCT and
// quantization, one band of eight sample rows at a time.
//
// Only the quantized blocks are kept; the floating-point samples of a band
// live in one strip that is reused, so memory is the blocks plus one strip.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "photos/area_resample.h"
#include "photos/cjpeg.h"
#include "photos/cjpeg_internal.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Eight-float values are passed between small functions that are all
// inlined; the note about their calling convention doesn't apply.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace zelvo {

using namespace jpeg_detail;

namespace {

int Round8(int x) { return (x + 7) & ~7; }

// Eight floats handled as one value; the compiler maps it onto the vector
// registers it has (two SSE registers on plain x86-64).
typedef float F8 __attribute__((vector_size(32)));

F8 Load8(const float* p) {
    F8 v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

// One pass of the floating-point Arai-Agui-Nakajima DCT over eight rows of
// eight lanes: lane j of the outputs is the eight-point transform of lane j
// of the inputs. The outputs keep the scale the divisors take out.
void Aan8(F8 d[8]) {
    const F8 t0 = d[0] + d[7], t7 = d[0] - d[7];
    const F8 t1 = d[1] + d[6], t6 = d[1] - d[6];
    const F8 t2 = d[2] + d[5], t5 = d[2] - d[5];
    const F8 t3 = d[3] + d[4], t4 = d[3] - d[4];

    // Even part.
    const F8 t10 = t0 + t3, t13 = t0 - t3;
    const F8 t11 = t1 + t2, t12 = t1 - t2;
    d[0] = t10 + t11;
    d[4] = t10 - t11;
    const F8 z1 = (t12 + t13) * 0.707106781186548f;
    d[2] = t13 + z1;
    d[6] = t13 - z1;

    // Odd part.
    const F8 o10 = t4 + t5, o11 = t5 + t6, o12 = t6 + t7;
    const F8 z5 = (o10 - o12) * 0.382683432365091f;
    const F8 z2 = 0.541196100146196f * o10 + z5;
    const F8 z4 = 1.30656296487638f * o12 + z5;
    const F8 z3 = o11 * 0.707106781186548f;
    const F8 z11 = t7 + z3, z13 = t7 - z3;
    d[5] = z13 + z2;
    d[3] = z13 - z2;
    d[1] = z11 + z4;
    d[7] = z11 - z4;
}

void Transpose(F8 d[8]) {
    float m[8][8];
    std::memcpy(m, d, sizeof m);
    float t[8][8];
    for (int i = 0; i < 8; ++i)
        for (int j = 0; j < 8; ++j) t[j][i] = m[i][j];
    std::memcpy(d, t, sizeof t);
}

// The quantizer of one table in the order the transform leaves its outputs
// (transposed: index v * 8 + u holds row frequency u, column frequency v).
struct Quantizer {
    alignas(32) float divisor[64];
    std::uint8_t zigzag[64];
};

Quantizer MakeQuantizer(const std::array<float, 64>& divisorsZigZag) {
    Quantizer q{};
    for (int v = 0; v < 8; ++v)
        for (int u = 0; u < 8; ++u) {
            const int z = ZigZag[std::size_t(u * 8 + v)];
            q.divisor[v * 8 + u] = divisorsZigZag[std::size_t(z)];
            q.zigzag[v * 8 + u] = std::uint8_t(z);
        }
    return q;
}

// Columns first, then rows, then each output times its divisor, rounded to
// the nearest integer with ties to even, stored in zigzag order.
void TransformBlock(const float* strip, std::size_t stride, const Quantizer& q, std::int16_t* out) {
    F8 d[8];
    for (int r = 0; r < 8; ++r) d[r] = Load8(strip + std::size_t(r) * stride);
    Aan8(d);  // down the columns
    Transpose(d);
    Aan8(d);  // along the rows
    alignas(32) std::int32_t rounded[64];
    for (int k = 0; k < 8; ++k) {
        const F8 v = d[k] * Load8(q.divisor + 8 * k);
#if defined(__SSE2__)
        // cvtps2dq rounds in the default mode: to nearest, ties to even.
        __m128 lo, hi;
        std::memcpy(&lo, &v, 16);
        std::memcpy(&hi, reinterpret_cast<const char*>(&v) + 16, 16);
        _mm_store_si128(reinterpret_cast<__m128i*>(rounded + 8 * k), _mm_cvtps_epi32(lo));
        _mm_store_si128(reinterpret_cast<__m128i*>(rounded + 8 * k + 4), _mm_cvtps_epi32(hi));
#else
        for (int i = 0; i < 8; ++i) rounded[8 * k + i] = std::int32_t(std::nearbyint(v[i]));
#endif
    }
    for (int i = 0; i < 64; ++i) out[q.zigzag[i]] = std::int16_t(rounded[i]);
}

// The colour formula of a component: R * a + G * b + B * c + d in single
// precision. The products are looked up; the sum keeps the formula's order.
struct ColourFormula {
    float r[256], g[256], b[256];
    float d;
    ColourFormula(float a, float bb, float c, float dd) : d(dd) {
        for (int i = 0; i < 256; ++i) r[i] = float(i) * a, g[i] = float(i) * bb, b[i] = float(i) * c;
    }
    float operator()(const std::uint8_t* bgr) const { return r[bgr[2]] + g[bgr[1]] + b[bgr[0]] + d; }
};

const ColourFormula& FormulaOf(int component) {
    static const ColourFormula y(0.299f, 0.587f, 0.114f, -128.0f);
    static const ColourFormula cb(-0.16874f, -0.33126f, 0.5f, 0.0f);
    static const ColourFormula cr(0.5f, -0.41869f, -0.08131f, 0.0f);
    return component == 0 ? y : component == 1 ? cb : cr;
}

}  // namespace

void cJpeg::SampleHDC(Hdc hDC, int Width, int Height, int SrcX, int SrcY, int& Result) {
    precision_ = 8;
    width_ = Width;
    height_ = Height;
    if (!hDC || Width < 1 || Height < 1 ||
        std::int64_t(Round8(Width)) * Round8(Height) > imaging::kMaxPicturePixels) {
        Result = 1;
        return;
    }
    const cImage& src = *hDC;

    // The source as B G R rows. A 24-bit image is read in place; any other
    // depth, or an area reaching beyond the image (which is black), is first
    // copied.
    std::vector<std::uint8_t> copy;
    RgbView source;
    const bool inside = SrcX >= 0 && SrcY >= 0 && std::int64_t(SrcX) + Width <= src.Width() &&
                        std::int64_t(SrcY) + Height <= src.Height();
    if (src.BitCount() == 24 && inside) {
        const std::ptrdiff_t stride = src.BytesPerScanLine();
        source.top = src.DIBitsPtr() + std::ptrdiff_t(src.Height() - 1 - SrcY) * stride + std::ptrdiff_t(SrcX) * 3;
        source.stride = -stride;
    } else {
        copy.assign(std::size_t(Width) * std::size_t(Height) * 3, 0);
        std::vector<std::uint8_t> rgb(std::size_t(src.Width()) * 3);
        for (int y = 0; y < Height; ++y) {
            const int sy = SrcY + y;
            if (sy < 0 || sy >= src.Height()) continue;
            src.ReadRowRgb(sy, rgb.data());
            std::uint8_t* out = &copy[std::size_t(y) * std::size_t(Width) * 3];
            for (int x = 0; x < Width; ++x) {
                const int sx = SrcX + x;
                if (sx < 0 || sx >= src.Width()) continue;
                out[3 * x] = rgb[std::size_t(sx) * 3 + 2];
                out[3 * x + 1] = rgb[std::size_t(sx) * 3 + 1];
                out[3 * x + 2] = rgb[std::size_t(sx) * 3];
            }
        }
        source.top = copy.data();
        source.stride = std::ptrdiff_t(Width) * 3;
    }
    source.width = Width;
    source.height = Height;

    const Quantizer quantizers[2] = {MakeQuantizer(divisors_[0]), MakeQuantizer(divisors_[1])};
    // The drawn bitmap: what the last drawing left, and the real size drawn
    // into it; beyond that size its last column and row repeat.
    RgbView drawn;
    std::vector<std::uint8_t> stretched;
    int lastRoundW = -1, lastRoundH = -1;
    std::vector<float> strip;
    std::vector<std::size_t> columnOffset;

    for (std::size_t ci = 0; ci < components_.size(); ++ci) {
        Component& c = components_[ci];
        const int w = int((std::int64_t(c.H) * Width + hMax_ - 1) / hMax_);
        const int h = int((std::int64_t(c.V) * Height + vMax_ - 1) / vMax_);
        const int rw = Round8(w), rh = Round8(h);
        // A component whose plane rounds to the size of the one before
        // samples the bitmap as that one left it; only a new rounded size
        // draws again.
        if (rw != lastRoundW || rh != lastRoundH) {
            if (w == Width && h == Height) {
                drawn = source;
            } else {
                // Subsampling is the stretch of the source: the mean of the
                // pixels each sample covers. The stretch keeps the ratio of
                // the sampling factors exactly, so a sample stands for the
                // pixels a decoder spreads it back over; when the image ends
                // within the last sample, its last column or row fills it.
                // (Stretching Width to w itself would shift the samples a
                // little more at every step, a pixel by the far edge.)
                stretched.resize(std::size_t(w) * std::size_t(h) * 3);
                const double spanW = double(w) * hMax_ / c.H, spanH = double(h) * vMax_ / c.V;
                AreaResample(source, spanW, spanH, w, h, stretched.data(), std::ptrdiff_t(w) * 3);
                drawn = RgbView{stretched.data(), std::ptrdiff_t(w) * 3, w, h};
            }
            lastRoundW = rw;
            lastRoundH = rh;
        }
        c.BlocksPerRow = rw / 8;
        c.BlockRows = rh / 8;
        c.Data.assign(std::size_t(c.BlocksPerRow) * std::size_t(c.BlockRows) * 64, 0);

        columnOffset.resize(std::size_t(rw));
        for (int x = 0; x < rw; ++x) columnOffset[std::size_t(x)] = std::size_t(std::min(x, drawn.width - 1)) * 3;
        strip.resize(std::size_t(rw) * 8);
        const ColourFormula& formula = FormulaOf(int(ci));
        const Quantizer& quantizer = quantizers[c.Tq];
        std::int16_t* out = c.Data.data();
        for (int by = 0; by < c.BlockRows; ++by) {
            for (int r = 0; r < 8; ++r) {
                const std::uint8_t* row = drawn.Row(std::min(by * 8 + r, drawn.height - 1));
                float* s = &strip[std::size_t(r) * std::size_t(rw)];
                for (int x = 0; x < rw; ++x) s[x] = formula(row + columnOffset[std::size_t(x)]);
            }
            for (int bx = 0; bx < c.BlocksPerRow; ++bx, out += 64)
                TransformBlock(&strip[std::size_t(bx) * 8], std::size_t(rw), quantizer, out);
        }
    }
    Result = 0;
}

}  // namespace zelvo
