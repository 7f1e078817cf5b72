#include "platform/core/number_text.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace zelvo {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::optional<double> ParseRadix(std::string_view digits, int base) {
    if (digits.empty()) return std::nullopt;
    std::uint64_t v = 0;
    auto [p, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), v, base);
    if (ec != std::errc{} || p != digits.data() + digits.size()) return std::nullopt;
    return static_cast<double>(v);
}

}  // namespace

std::optional<double> ParseNumber(std::string_view t) {
    while (!t.empty() && IsBlank(t.front())) t.remove_prefix(1);
    while (!t.empty() && IsBlank(t.back())) t.remove_suffix(1);
    if (t.size() > 2 && t[0] == '&') {
        if (t[1] == 'H' || t[1] == 'h') return ParseRadix(t.substr(2), 16);
        if (t[1] == 'O' || t[1] == 'o') return ParseRadix(t.substr(2), 8);
        return std::nullopt;
    }
    bool negative = false;
    if (!t.empty() && (t[0] == '+' || t[0] == '-')) {
        negative = t[0] == '-';
        t.remove_prefix(1);
    }
    // from_chars alone would take "inf", "nan" and hexadecimal floats.
    if (t.empty() || !(std::isdigit(static_cast<unsigned char>(t[0])) || t[0] == '.')) return std::nullopt;
    double v = 0;
    auto [p, ec] = std::from_chars(t.data(), t.data() + t.size(), v, std::chars_format::general);
    if (ec != std::errc{} || p != t.data() + t.size() || !std::isfinite(v)) return std::nullopt;
    return negative ? -v : v;
}

}  // namespace zelvo
