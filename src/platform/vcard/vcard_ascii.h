// ASCII helpers for the vCard syntax, whose names and parameters compare
// without regard to ASCII case. None of them allocates unless it returns a
// string.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::vcard {

inline char AsciiUpperChar(char c) { return (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c; }

inline bool IEquals(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (AsciiUpperChar(a[i]) != AsciiUpperChar(b[i])) return false;
    }
    return true;
}

inline bool IStartsWith(std::string_view s, std::string_view prefix) {
    return s.size() >= prefix.size() && IEquals(s.substr(0, prefix.size()), prefix);
}

inline bool IsBlank(char c) { return c == ' ' || c == '\t'; }

inline std::string_view Trim(std::string_view s) {
    while (!s.empty() && (IsBlank(s.front()) || s.front() == '\r' || s.front() == '\n')) s.remove_prefix(1);
    while (!s.empty() && (IsBlank(s.back()) || s.back() == '\r' || s.back() == '\n')) s.remove_suffix(1);
    return s;
}

inline std::string AsciiUpper(std::string_view s) {
    std::string out(s);
    for (char& c : out) c = AsciiUpperChar(c);
    return out;
}

}  // namespace zelvo::vcard
