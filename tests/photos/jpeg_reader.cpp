#include "jpeg_reader.h"

#include <algorithm>

namespace zelvo::testing {

namespace {

[[noreturn]] void Bad(const std::string& what) { throw std::runtime_error("malformed JPEG: " + what); }

class BitReader {
public:
    explicit BitReader(const std::vector<std::uint8_t>& d) : d_(d) {}
    int Bit() {
        if (n_ == 0) {
            if (pos_ >= d_.size()) Bad("entropy data ends early");
            cur_ = d_[pos_++];
            if (cur_ == 0xFF) {
                if (pos_ >= d_.size() || d_[pos_] != 0x00) Bad("FF not followed by 00");
                ++pos_;
            }
            n_ = 8;
        }
        return (cur_ >> --n_) & 1;
    }
    int Bits(int count) {
        int v = 0;
        for (int i = 0; i < count; ++i) v = v << 1 | Bit();
        return v;
    }
    // Bits left unread; they must all be ones and no byte may follow.
    int Rest() {
        if (pos_ != d_.size()) Bad("bytes after the last block");
        for (int i = 0; i < n_; ++i)
            if (!((cur_ >> i) & 1)) Bad("padding bits are not all ones");
        return n_;
    }

private:
    const std::vector<std::uint8_t>& d_;
    std::size_t pos_ = 0;
    std::uint8_t cur_ = 0;
    int n_ = 0;
};

int Decode(BitReader& br, const HuffmanCodes& t) {
    int code = 0, first = 0, index = 0;
    for (int len = 1; len <= 16; ++len) {
        code |= br.Bit();
        const int count = t.bits[len];
        if (code - first < count) return t.values.at(std::size_t(index + code - first));
        index += count;
        first = (first + count) << 1;
        code <<= 1;
    }
    Bad("no Huffman code matches");
}

int Extend(int v, int s) { return s == 0 ? 0 : v < (1 << (s - 1)) ? v - (1 << s) + 1 : v; }

int U16(const std::vector<std::uint8_t>& b, std::size_t at) { return b.at(at) << 8 | b.at(at + 1); }

}  // namespace

std::vector<Segment> SplitSegments(const std::vector<std::uint8_t>& f) {
    std::vector<Segment> out;
    std::size_t p = 0;
    while (p < f.size()) {
        if (f[p] != 0xFF || p + 1 >= f.size()) Bad("expected a marker at " + std::to_string(p));
        Segment s;
        s.marker = f[p + 1];
        p += 2;
        if (s.marker == 0xD8 || s.marker == 0xD9) {
            out.push_back(s);
            if (s.marker == 0xD9) break;
            continue;
        }
        if (p + 2 > f.size()) Bad("segment length cut off");
        const std::size_t len = std::size_t(U16(f, p));
        if (len < 2 || p + len > f.size()) Bad("segment length out of the file");
        s.body.assign(f.begin() + long(p + 2), f.begin() + long(p + len));
        p += len;
        if (s.marker == 0xDA) {
            const std::size_t start = p;
            while (p + 1 < f.size() && !(f[p] == 0xFF && f[p + 1] != 0x00)) ++p;
            s.data.assign(f.begin() + long(start), f.begin() + long(p));
        }
        out.push_back(std::move(s));
    }
    if (p != f.size()) Bad("bytes after EOI");
    return out;
}

std::string MarkerNames(const std::vector<Segment>& segments) {
    std::string names;
    for (const Segment& s : segments) {
        std::string n;
        switch (s.marker) {
            case 0xD8: n = "SOI"; break;
            case 0xD9: n = "EOI"; break;
            case 0xDB: n = "DQT"; break;
            case 0xC0: n = "SOF0"; break;
            case 0xC4: n = "DHT"; break;
            case 0xDA: n = "SOS"; break;
            case 0xDD: n = "DRI"; break;
            case 0xFE: n = "COM"; break;
            default: n = s.marker >= 0xE0 && s.marker <= 0xEF ? "APP" + std::to_string(s.marker - 0xE0) : "?";
        }
        names += (names.empty() ? "" : " ") + n;
    }
    return names;
}

DecodedJpeg DecodeBaseline(const std::vector<std::uint8_t>& file) {
    DecodedJpeg j;
    j.quant.resize(4);
    for (const Segment& s : SplitSegments(file)) {
        const auto& b = s.body;
        if (s.marker == 0xDB) {
            for (std::size_t p = 0; p < b.size();) {
                const int pq = b[p] >> 4, tq = b[p] & 15;
                ++p;
                auto& q = j.quant.at(std::size_t(tq));
                q.clear();
                for (int k = 0; k < 64; ++k, p += pq ? 2 : 1) q.push_back(pq ? U16(b, p) : b.at(p));
            }
        } else if (s.marker == 0xC0) {
            j.precision = b.at(0);
            j.height = U16(b, 1), j.width = U16(b, 3);
            int hmax = 1, vmax = 1;
            for (int i = 0; i < b.at(5); ++i) {
                FrameComponent c;
                c.id = b.at(6 + 3 * std::size_t(i));
                c.h = b.at(7 + 3 * std::size_t(i)) >> 4, c.v = b.at(7 + 3 * std::size_t(i)) & 15;
                c.tq = b.at(8 + 3 * std::size_t(i));
                hmax = std::max(hmax, c.h), vmax = std::max(vmax, c.v);
                j.components.push_back(c);
            }
            for (FrameComponent& c : j.components) {
                const int w = (j.width * c.h + hmax - 1) / hmax, h = (j.height * c.v + vmax - 1) / vmax;
                c.blocksPerRow = (w + 7) / 8, c.blockRows = (h + 7) / 8;
            }
        } else if (s.marker == 0xC4) {
            for (std::size_t p = 0; p < b.size();) {
                HuffmanCodes t;
                const int key = b.at(p++);
                int total = 0;
                for (int l = 1; l <= 16; ++l) total += t.bits[l] = b.at(p++);
                t.values.assign(b.begin() + long(p), b.begin() + long(p + std::size_t(total)));
                if (t.values.size() != std::size_t(total)) Bad("DHT cut off");
                p += std::size_t(total);
                j.tables[key] = t;
            }
        } else if (s.marker == 0xDA) {
            DecodedScan scan;
            const int n = b.at(0);
            std::vector<std::pair<int, int>> slots;  // dc, ac per scan component
            for (int i = 0; i < n; ++i) {
                const int id = b.at(1 + 2 * std::size_t(i));
                const auto it = std::find_if(j.components.begin(), j.components.end(), [&](auto& c) { return c.id == id; });
                if (it == j.components.end()) Bad("scan names an unknown component");
                scan.components.push_back(int(it - j.components.begin()));
                slots.emplace_back(b.at(2 + 2 * std::size_t(i)) >> 4, b.at(2 + 2 * std::size_t(i)) & 15);
            }
            BitReader br(s.data);
            std::vector<int> pred(j.components.size(), 0);
            auto block = [&](int si, int row, int col) {
                const int ci = scan.components[std::size_t(si)];
                const FrameComponent& c = j.components[std::size_t(ci)];
                DecodedBlock d;
                d.component = ci, d.row = row, d.col = col;
                d.inside = row < c.blockRows && col < c.blocksPerRow;
                const HuffmanCodes& dc = j.tables.at(slots[std::size_t(si)].first);
                const HuffmanCodes& ac = j.tables.at(0x10 + slots[std::size_t(si)].second);
                const int s = Decode(br, dc);
                pred[std::size_t(ci)] += Extend(br.Bits(s), s);
                d.coef[0] = std::int16_t(pred[std::size_t(ci)]);
                for (int k = 1; k < 64;) {
                    const int rs = Decode(br, ac), r = rs >> 4, sz = rs & 15;
                    if (sz == 0) {
                        if (r != 15) break;
                        k += 16;
                        continue;
                    }
                    k += r;
                    if (k > 63) Bad("AC run beyond the block");
                    d.coef[k++] = std::int16_t(Extend(br.Bits(sz), sz));
                }
                scan.blocks.push_back(d);
            };
            if (n == 1) {
                const FrameComponent& c = j.components[std::size_t(scan.components[0])];
                for (int r = 0; r < c.blockRows; ++r)
                    for (int col = 0; col < c.blocksPerRow; ++col) block(0, r, col);
            } else {
                int hmax = 1, vmax = 1;
                for (const FrameComponent& c : j.components) hmax = std::max(hmax, c.h), vmax = std::max(vmax, c.v);
                const int mcuCols = (j.width + 8 * hmax - 1) / (8 * hmax);
                const int mcuRows = (j.height + 8 * vmax - 1) / (8 * vmax);
                for (int my = 0; my < mcuRows; ++my)
                    for (int mx = 0; mx < mcuCols; ++mx)
                        for (int si = 0; si < n; ++si) {
                            const FrameComponent& c = j.components[std::size_t(scan.components[std::size_t(si)])];
                            for (int v = 0; v < c.v; ++v)
                                for (int h = 0; h < c.h; ++h) block(si, my * c.v + v, mx * c.h + h);
                        }
            }
            scan.paddingBits = br.Rest();
            j.scans.push_back(std::move(scan));
        }
    }
    return j;
}

}  // namespace zelvo::testing
