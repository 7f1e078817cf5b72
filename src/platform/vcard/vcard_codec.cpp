#include "platform/vcard/vcard_codec.h"

#include <array>
#include <cstdint>

namespace zelvo::vcard {

namespace {

constexpr std::int8_t kSkip = -2;
constexpr std::int8_t kBad = -1;

constexpr std::array<std::int8_t, 256> MakeBase64Table() {
    std::array<std::int8_t, 256> t{};
    for (auto& v : t) v = kBad;
    const char* alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (int i = 0; i < 64; ++i) t[static_cast<unsigned char>(alphabet[i])] = static_cast<std::int8_t>(i);
    // URL-safe variants appear in cards written by web services.
    t['-'] = 62;
    t['_'] = 63;
    t[' '] = t['\t'] = t['\r'] = t['\n'] = kSkip;
    return t;
}
constexpr auto kBase64 = MakeBase64Table();

int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

}  // namespace

bool DecodeBase64(std::string_view in, std::string& out) {
    out.reserve(out.size() + in.size() / 4 * 3 + 3);
    std::uint32_t acc = 0;
    int bits = 0;
    int count = 0;  // characters of the current quantum
    for (std::size_t i = 0; i < in.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(in[i]);
        if (c == '=') break;  // padding: what follows is ignored
        std::int8_t v = kBase64[c];
        if (v == kSkip) continue;
        if (v == kBad) return false;
        acc = (acc << 6) | static_cast<std::uint32_t>(v);
        bits += 6;
        count = (count + 1) & 3;
        if (bits >= 8) {
            bits -= 8;
            out.push_back(static_cast<char>((acc >> bits) & 0xFF));
        }
    }
    return count != 1;  // one lone character cannot carry a byte
}

void EncodeBase64(std::string_view in, std::string& out) {
    static const char* alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    out.reserve(out.size() + (in.size() + 2) / 3 * 4);
    std::size_t i = 0;
    for (; i + 3 <= in.size(); i += 3) {
        std::uint32_t v = (std::uint32_t(std::uint8_t(in[i])) << 16) |
                          (std::uint32_t(std::uint8_t(in[i + 1])) << 8) | std::uint8_t(in[i + 2]);
        out.push_back(alphabet[(v >> 18) & 63]);
        out.push_back(alphabet[(v >> 12) & 63]);
        out.push_back(alphabet[(v >> 6) & 63]);
        out.push_back(alphabet[v & 63]);
    }
    std::size_t rest = in.size() - i;
    if (rest > 0) {
        std::uint32_t v = std::uint32_t(std::uint8_t(in[i])) << 16;
        if (rest == 2) v |= std::uint32_t(std::uint8_t(in[i + 1])) << 8;
        out.push_back(alphabet[(v >> 18) & 63]);
        out.push_back(alphabet[(v >> 12) & 63]);
        out.push_back(rest == 2 ? alphabet[(v >> 6) & 63] : '=');
        out.push_back('=');
    }
}

bool DecodeQuotedPrintable(std::string_view in, std::string& out) {
    bool clean = true;
    out.reserve(out.size() + in.size());
    for (std::size_t i = 0; i < in.size(); ++i) {
        char c = in[i];
        if (c != '=') {
            out.push_back(c);
            continue;
        }
        // Soft break: '=' then optional blanks then a line break.
        std::size_t j = i + 1;
        while (j < in.size() && (in[j] == ' ' || in[j] == '\t')) ++j;
        if (j < in.size() && (in[j] == '\r' || in[j] == '\n')) {
            if (in[j] == '\r' && j + 1 < in.size() && in[j + 1] == '\n') ++j;
            i = j;
            continue;
        }
        if (j == in.size()) {  // '=' at the very end: a soft break with nothing after
            i = j;
            continue;
        }
        int hi = i + 1 < in.size() ? HexValue(in[i + 1]) : -1;
        int lo = i + 2 < in.size() ? HexValue(in[i + 2]) : -1;
        if (hi >= 0 && lo >= 0) {
            out.push_back(static_cast<char>(hi * 16 + lo));
            i += 2;
        } else {
            out.push_back('=');
            clean = false;
        }
    }
    return clean;
}

bool IsValidUtf8(std::string_view s) {
    const auto* p = reinterpret_cast<const unsigned char*>(s.data());
    const auto* end = p + s.size();
    while (p < end) {
        // Fast path over ASCII, eight bytes at a time.
        while (end - p >= 8) {
            std::uint64_t w;
            __builtin_memcpy(&w, p, 8);
            if (w & 0x8080808080808080ULL) break;
            p += 8;
        }
        if (p >= end) break;
        unsigned char c = *p;
        if (c < 0x80) { ++p; continue; }
        int n;
        std::uint32_t cp;
        if (c >= 0xC2 && c <= 0xDF) { n = 1; cp = c & 0x1F; }
        else if (c >= 0xE0 && c <= 0xEF) { n = 2; cp = c & 0x0F; }
        else if (c >= 0xF0 && c <= 0xF4) { n = 3; cp = c & 0x07; }
        else return false;
        if (end - p <= n) return false;
        for (int k = 1; k <= n; ++k) {
            if ((p[k] & 0xC0) != 0x80) return false;
            cp = (cp << 6) | (p[k] & 0x3F);
        }
        if ((n == 2 && cp < 0x800) || (n == 3 && (cp < 0x10000 || cp > 0x10FFFF)) ||
            (cp >= 0xD800 && cp <= 0xDFFF)) {
            return false;
        }
        p += n + 1;
    }
    return true;
}

void AppendUnescaped(std::string_view s, std::string& out) {
    std::size_t start = 0;
    for (;;) {
        std::size_t at = s.find_first_of("\\\r", start);
        if (at == std::string_view::npos) {
            out.append(s.substr(start));
            return;
        }
        out.append(s.substr(start, at - start));
        if (s[at] == '\r') {
            // Line breaks inside values (from quoted-printable =0D=0A) are
            // kept as LF, as escaped ones are.
            out.push_back('\n');
            start = at + 1;
            if (start < s.size() && s[start] == '\n') ++start;
            continue;
        }
        if (at + 1 >= s.size()) {
            out.push_back('\\');
            return;
        }
        char n = s[at + 1];
        switch (n) {
            case 'n': case 'N': out.push_back('\n'); break;
            case ',': case ';': case ':': case '\\': out.push_back(n); break;
            default: out.push_back('\\'); out.push_back(n); break;
        }
        start = at + 2;
    }
}

void AppendEscaped(std::string_view s, std::string& out) {
    for (std::size_t i = 0; i < s.size(); ++i) {
        char c = s[i];
        switch (c) {
            case '\\': out += "\\\\"; break;
            case ',': out += "\\,"; break;
            case ';': out += "\\;"; break;
            case '\r':
                if (i + 1 < s.size() && s[i + 1] == '\n') ++i;
                out += "\\n";
                break;
            case '\n': out += "\\n"; break;
            default: out.push_back(c);
        }
    }
}

}  // namespace zelvo::vcard
