#include "personcard/display_as.h"

#include <algorithm>

namespace zelvo {

namespace {

std::string Trim(const std::string& s) {
    size_t b = s.find_first_not_of(' ');
    if (b == std::string::npos) return {};
    size_t e = s.find_last_not_of(' ');
    return s.substr(b, e - b + 1);
}

// The first character of a UTF-8 text, whole: a name's initial may be
// Cyrillic or any other script.
std::string FirstChar(const std::string& s) {
    if (s.empty()) return {};
    auto lead = static_cast<unsigned char>(s[0]);
    size_t n = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 1;
    return s.substr(0, std::min(n, s.size()));
}

// "x " when x is not empty, else nothing.
std::string Spaced(const std::string& x) { return x.empty() ? x : x + " "; }
// "x. " when x is not empty, else nothing.
std::string Initial(const std::string& x) { return x.empty() ? x : x + ". "; }

}  // namespace

std::vector<std::string> FillDisplayAs(const std::string& F, const std::string& N, const std::string& P,
                                       const std::string& current, const std::string& org) {
    std::string n = FirstChar(N), p = FirstChar(P);
    std::vector<std::string> items{
        Trim(Spaced(F) + Spaced(N) + Spaced(P)),
        Trim(Spaced(N) + Spaced(P) + Spaced(F)),
        Trim(Spaced(F) + Initial(n) + Initial(p)),
        Initial(n) + Initial(p) + F,
        Trim(org).empty() ? std::string() : org,
    };
    std::string trimmed = Trim(current);
    bool known = false;
    for (const std::string& item : items) known = known || item == trimmed || item == current;
    if (!known) items.push_back(current);
    std::erase_if(items, [](const std::string& s) { return s.empty(); });
    return items;
}

}  // namespace zelvo
