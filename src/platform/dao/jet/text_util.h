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

}  // namespace zelvo::dao::jet
