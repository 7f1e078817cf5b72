// cJpeg::CreateArray: statistics, optimal Huffman tables (ITU T.81 Annex
// K.2), and the file: markers, tables, frame, scans.
#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "photos/cjpeg.h"
#include "photos/cjpeg_internal.h"
#include "platform/core/error.h"

namespace zelvo {

using namespace jpeg_detail;

namespace {

[[noreturn]] void Raise(const char* text) { throw Error(1, text, "cJpeg"); }

void Put16(std::vector<std::uint8_t>& out, int v) {
    out.push_back(std::uint8_t((v >> 8) & 0xFF));
    out.push_back(std::uint8_t(v & 0xFF));
}

// Writes bits from the most significant end; a byte FF is followed by 00 so
// that no marker can appear inside the coded data.
class BitWriter {
public:
    explicit BitWriter(std::vector<std::uint8_t>& out) : out_(out) {}
    void Put(std::uint32_t bits, int count) {
        acc_ = (acc_ << count) | bits;
        n_ += count;
        if (n_ >= 32) Drain();
    }
    // Fills the last byte with 1 bits and stores it.
    void Finish() {
        if (n_ % 8) Put((1u << (8 - n_ % 8)) - 1, 8 - n_ % 8);
        Drain();
    }

private:
    void Drain() {
        while (n_ >= 8) {
            n_ -= 8;
            const auto byte = std::uint8_t(acc_ >> n_);
            out_.push_back(byte);
            if (byte == 0xFF) out_.push_back(0);
        }
    }
    std::vector<std::uint8_t>& out_;
    std::uint64_t acc_ = 0;
    int n_ = 0;
};

// The low `count` bits of a value as coded after its category: the value
// itself, or the value minus 1 when it is negative (ones' complement).
std::uint32_t ExtraBits(int v, int count) {
    return std::uint32_t(v < 0 ? v - 1 : v) & ((1u << count) - 1);
}

}  // namespace

std::vector<std::vector<int>> cJpeg::ScanGroups() const {
    // Components join a scan in order while its blocks per MCU stay at 10 or
    // fewer and it has fewer than 3 components.
    std::vector<std::vector<int>> groups;
    int sum = 0;
    for (int i = 0; i < int(components_.size()); ++i) {
        const int blocks = components_[std::size_t(i)].H * components_[std::size_t(i)].V;
        if (groups.empty() || sum + blocks > 10 || groups.back().size() >= 3) {
            groups.push_back({});
            sum = 0;
        }
        groups.back().push_back(i);
        sum += blocks;
    }
    return groups;
}

void cJpeg::Gather(Statistics& stats) const {
    bool dummyCoded[2] = {false, false};
    for (const std::vector<int>& group : ScanGroups()) {
        int pred[4] = {0, 0, 0, 0};
        WalkScan(components_, group, width_, height_, hMax_, vMax_, [&](int c, const std::int16_t* block) {
            const int slot = SlotOf(c);
            if (!block) {
                ++stats.dc[std::size_t(slot)][0];
                dummyCoded[slot] = true;
                return;
            }
            ++stats.dc[std::size_t(slot)][std::size_t(Category(block[0] - pred[c]))];
            pred[c] = block[0];
            auto& ac = stats.ac[std::size_t(slot)];
            ForEachAcSymbol(
                block, [&] { ++ac[0xF0]; }, [&](std::size_t sym, int, int) { ++ac[sym]; }, [&] { ++ac[0]; });
        });
    }
    // A dummy block is coded with an end-of-block code. When every real block
    // of a table ends in a non-zero coefficient, the real blocks alone never
    // count that code, and the dummies would have none to write: count it.
    for (int slot = 0; slot < 2; ++slot)
        if (dummyCoded[slot] && stats.ac[std::size_t(slot)][0] == 0) stats.ac[std::size_t(slot)][0] = 1;
}

void jpeg_detail::MakeOptimalTable(const std::array<std::int64_t, 256>& counts, int symbolLimit,
                                   cJpeg::HuffmanTable& table) {
    // Annex K.2, Figure K.1: symbols 0-255 and a reserved symbol 256 with
    // count 1, so that no real code comes out all ones.
    constexpr int kSymbols = 257;
    std::int64_t freq[kSymbols];
    int codeSize[kSymbols], others[kSymbols];
    for (int i = 0; i < 256; ++i) freq[i] = counts[std::size_t(i)];
    freq[256] = 1;
    std::fill(codeSize, codeSize + kSymbols, 0);
    std::fill(others, others + kSymbols, -1);
    for (;;) {
        // The two least frequent entries; on equal counts the higher symbol.
        int c1 = -1, c2 = -1;
        std::int64_t v = std::numeric_limits<std::int64_t>::max();
        for (int i = 0; i < kSymbols; ++i)
            if (freq[i] && freq[i] <= v) v = freq[i], c1 = i;
        v = std::numeric_limits<std::int64_t>::max();
        for (int i = 0; i < kSymbols; ++i)
            if (freq[i] && freq[i] <= v && i != c1) v = freq[i], c2 = i;
        if (c2 < 0) break;
        freq[c1] += freq[c2];
        freq[c2] = 0;
        for (++codeSize[c1]; others[c1] >= 0;) ++codeSize[c1 = others[c1]];
        others[c1] = c2;
        for (++codeSize[c2]; others[c2] >= 0;) ++codeSize[c2 = others[c2]];
    }
    // Sizes counted into BITS. Room to 32 is what the method needs in
    // practice; the array goes to the deepest a tree of 257 leaves can be.
    int bits[kSymbols + 1] = {};
    int deepest = 0;
    for (int i = 0; i < kSymbols; ++i)
        if (codeSize[i]) ++bits[codeSize[i]], deepest = std::max(deepest, codeSize[i]);
    // Figure K.3: codes longer than 16 bits move up, two at a time.
    for (int i = deepest; i > 16; --i) {
        while (bits[i] > 0) {
            int j = i - 2;
            while (bits[j] == 0) --j;
            bits[i] -= 2;
            ++bits[i - 1];
            bits[j + 1] += 2;
            --bits[j];
        }
    }
    // The reserved symbol leaves from the longest size in use.
    int i = 16;
    while (i > 0 && bits[i] == 0) --i;
    if (i > 0) --bits[i];

    table.Bits.fill(0);
    for (int l = 1; l <= 16; ++l) table.Bits[std::size_t(l)] = std::uint8_t(bits[l]);
    table.HuffVal.clear();
    for (int size = 1; size <= deepest; ++size)
        for (int s = 0; s < 256; ++s)
            if (codeSize[s] == size) table.HuffVal.push_back(std::uint8_t(s));

    // Check, then the codes in the canonical order of Annex C.
    int total = 0;
    for (int l = 1; l <= 16; ++l) {
        total += table.Bits[std::size_t(l)];
        if (total > 256) Raise(kBadHuffmanTable);
    }
    if (total == 0 || std::size_t(total) > table.HuffVal.size()) Raise(kBadHuffmanTable);
    table.HuffVal.resize(std::size_t(total));
    bool seen[256] = {};
    for (std::uint8_t s : table.HuffVal) {
        if (seen[s] || s > symbolLimit) Raise(kBadHuffmanTable);
        seen[s] = true;
    }
    table.Code.fill(0);
    table.Size.fill(0);
    std::uint32_t code = 0;
    std::size_t k = 0;
    for (int l = 1; l <= 16; ++l) {
        for (int n = 0; n < table.Bits[std::size_t(l)]; ++n, ++k) {
            table.Code[table.HuffVal[k]] = std::uint16_t(code++);
            table.Size[table.HuffVal[k]] = std::uint8_t(l);
        }
        code <<= 1;
    }
}

void cJpeg::WriteScan(const std::vector<int>& group, std::vector<std::uint8_t>& out) const {
    out.push_back(0xFF);
    out.push_back(0xDA);
    Put16(out, 6 + 2 * int(group.size()));
    out.push_back(std::uint8_t(group.size()));
    for (int c : group) {
        out.push_back(std::uint8_t(components_[std::size_t(c)].Id));
        out.push_back(std::uint8_t(SlotOf(c) * 16 + SlotOf(c)));
    }
    out.push_back(0x00);
    out.push_back(0x3F);
    out.push_back(0x00);

    BitWriter bw(out);
    int pred[4] = {0, 0, 0, 0};
    WalkScan(components_, group, width_, height_, hMax_, vMax_, [&](int c, const std::int16_t* block) {
        const HuffmanTable& dcT = dcTables_[std::size_t(SlotOf(c))];
        const HuffmanTable& acT = acTables_[std::size_t(SlotOf(c))];
        if (!block) {  // a dummy: the last DC again, and no AC
            bw.Put(dcT.Code[0], dcT.Size[0]);
            bw.Put(acT.Code[0], acT.Size[0]);
            return;
        }
        const int diff = block[0] - pred[c];
        pred[c] = block[0];
        const int cat = Category(diff);
        bw.Put(dcT.Code[std::size_t(cat)], dcT.Size[std::size_t(cat)]);
        if (cat) bw.Put(ExtraBits(diff, cat), cat);
        ForEachAcSymbol(
            block, [&] { bw.Put(acT.Code[0xF0], acT.Size[0xF0]); },
            [&](std::size_t sym, int v, int vc) {
                bw.Put((std::uint32_t(acT.Code[sym]) << vc) | ExtraBits(v, vc), acT.Size[sym] + vc);
            },
            [&] { bw.Put(acT.Code[0], acT.Size[0]); });
    });
    bw.Finish();
}

void cJpeg::CreateArray(std::vector<std::uint8_t>& Bytes) {
    // A wider or taller picture cannot be written: its size would be cut
    // to 16 bits and the file would lie about its own rows.
    if (width_ > 65535 || height_ > 65535) Raise(kPictureTooLarge);
    Statistics stats;
    Gather(stats);
    const int slots = components_.size() > 1 ? 2 : 1;
    std::int64_t bits = 0;
    for (int s = 0; s < slots; ++s) {
        MakeOptimalTable(stats.dc[std::size_t(s)], precision_ == 12 ? 15 : 11, dcTables_[std::size_t(s)]);
        MakeOptimalTable(stats.ac[std::size_t(s)], 255, acTables_[std::size_t(s)]);
        for (int sym = 0; sym < 256; ++sym) {
            bits += stats.dc[std::size_t(s)][std::size_t(sym)] * (dcTables_[std::size_t(s)].Size[std::size_t(sym)] + sym);
            bits += stats.ac[std::size_t(s)][std::size_t(sym)] * (acTables_[std::size_t(s)].Size[std::size_t(sym)] + (sym & 15));
        }
    }
    std::vector<std::uint8_t> out;
    // The size the statistics promise, with room for stuffed bytes; the
    // vector grows past it if it must, and is cut to length at the end.
    out.reserve(std::size_t(double(bits / 8) * 1.3) + 1000 + comment_.size());

    out.insert(out.end(), {0xFF, 0xD8});
    out.insert(out.end(), {0xFF, 0xE0, 0x00, 0x10, 'J', 'F', 'I', 'F', 0x00, 0x01, 0x01, 0x00, 0x00, 0x01, 0x00, 0x01,
                           0x00, 0x00});
    for (int slot = 0; slot < slots; ++slot) {
        const std::array<int, 64>& steps = steps_[std::size_t(slot)];
        const bool wide = std::any_of(steps.begin(), steps.end(), [](int q) { return q > 255; });
        if (wide && precision_ != 12) Raise(kIllegalPrecision);
        out.insert(out.end(), {0xFF, 0xDB});
        Put16(out, wide ? 131 : 67);
        out.push_back(std::uint8_t((wide ? 16 : 0) + slot));
        for (int q : steps) {
            if (wide) out.push_back(std::uint8_t(q >> 8));
            out.push_back(std::uint8_t(q & 0xFF));
        }
    }
    out.insert(out.end(), {0xFF, 0xC0});
    Put16(out, 8 + 3 * int(components_.size()));
    out.push_back(std::uint8_t(precision_));
    Put16(out, height_);
    Put16(out, width_);
    out.push_back(std::uint8_t(components_.size()));
    for (const Component& c : components_) {
        out.push_back(std::uint8_t(c.Id));
        out.push_back(std::uint8_t(c.H * 16 + c.V));
        out.push_back(std::uint8_t(c.Tq));
    }
    auto writeDht = [&](const HuffmanTable& t, int classAndSlot) {
        out.insert(out.end(), {0xFF, 0xC4});
        Put16(out, 2 + 1 + 16 + int(t.HuffVal.size()));
        out.push_back(std::uint8_t(classAndSlot));
        out.insert(out.end(), t.Bits.begin() + 1, t.Bits.end());
        out.insert(out.end(), t.HuffVal.begin(), t.HuffVal.end());
    };
    for (int slot = 0; slot < slots; ++slot) {
        writeDht(dcTables_[std::size_t(slot)], slot);
        writeDht(acTables_[std::size_t(slot)], 16 + slot);
    }
    for (const std::vector<int>& group : ScanGroups()) WriteScan(group, out);
    out.insert(out.end(), {0xFF, 0xD9});
    out.shrink_to_fit();
    Bytes = std::move(out);
}

}  // namespace zelvo
