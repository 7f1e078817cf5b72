// UTF-8 helpers shared by the runtime functions: Jet counts characters, not
// bytes, and compares text without regard to case.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::dao::jet {

// Code points of a UTF-8 text; an invalid byte becomes U+FFFD.
std::u32string DecodeUtf8(std::string_view s);
std::string EncodeUtf8(std::u32string_view s);
void AppendUtf8(std::string& out, char32_t c);

// Simple (one to one) Unicode case folding, so positions stay the same.
char32_t FoldCase(char32_t c);
std::u32string FoldCase(std::u32string s);

char32_t ToUpper(char32_t c);
char32_t ToLower(char32_t c);

// True when `s` has no byte above 127: the common case, which has fast paths.
inline bool IsAscii(std::string_view s) {
    for (char c : s)
        if (static_cast<unsigned char>(c) & 0x80) return false;
    return true;
}

// The one comparison of names: tables, fields, saved queries, the members
// of a host's calls. Case is ignored in every alphabet ("Имя" = "имя"),
// nothing else is. Every part of the engine that matches a name goes
// through it, so that a name found in one place is found in all.
bool SameName(std::string_view a, std::string_view b);

// SameName for two names known to be plain ASCII: a byte compare that
// ignores the case of letters.
inline bool SameAsciiName(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        unsigned char x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
        if (x != y && ((x | 0x20) != (y | 0x20) || (x | 0x20) < 'a' || (x | 0x20) > 'z')) return false;
    }
    return true;
}

// The key of a name for hash lookups: FoldName(a) == FoldName(b) exactly
// when SameName(a, b).
std::string FoldName(std::string_view name);

}  // namespace zelvo::dao::jet
