#include "platform/dao/jet/text_util.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace zelvo::dao::jet {

std::u32string DecodeUtf8(std::string_view s) {
    std::u32string out;
    out.reserve(s.size());
    const auto* p = reinterpret_cast<const uint8_t*>(s.data());
    int32_t i = 0;
    const int32_t n = static_cast<int32_t>(s.size());
    while (i < n) {
        UChar32 c;
        U8_NEXT(p, i, n, c);
        out.push_back(c < 0 ? U'\uFFFD' : static_cast<char32_t>(c));
    }
    return out;
}

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

std::string EncodeUtf8(std::u32string_view s) {
    std::string out;
    out.reserve(s.size());
    for (char32_t c : s) AppendUtf8(out, c);
    return out;
}

char32_t FoldCase(char32_t c) {
    if (c < 0x80) return (c >= 'A' && c <= 'Z') ? c + 32 : c;
    return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT));
}

std::u32string FoldCase(std::u32string s) {
    for (char32_t& c : s) c = FoldCase(c);
    return s;
}

std::string FoldName(std::string_view name) {
    std::string out;
    out.reserve(name.size());
    if (IsAscii(name)) {
        for (char c : name) out += (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
        return out;
    }
    for (char32_t c : DecodeUtf8(name)) AppendUtf8(out, FoldCase(c));
    return out;
}

bool SameName(std::string_view a, std::string_view b) {
    // Names are nearly always plain ASCII: compared without a call per character.
    if (IsAscii(a) && IsAscii(b)) return SameAsciiName(a, b);
    return FoldName(a) == FoldName(b);
}

char32_t ToUpper(char32_t c) { return static_cast<char32_t>(u_toupper(static_cast<UChar32>(c))); }
char32_t ToLower(char32_t c) { return static_cast<char32_t>(u_tolower(static_cast<UChar32>(c))); }

}  // namespace zelvo::dao::jet
