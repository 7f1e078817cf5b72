// Jet's Like: * any run, ? one character, # one digit, [list] one of a list,
// [!list] one not in it, [a-z] ranges, [*] [?] [#] [[] the character itself,
// "-" literal first or last in a list, [] nothing at all. Case does not
// count, across Unicode (simple case folding); % and _ are plain characters.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelvo::dao::jet {

class LikePattern {
public:
    // Compiles `pattern`. A '[' without its ']' makes a pattern that matches
    // nothing (valid() is false).
    explicit LikePattern(std::string_view pattern);
    bool valid() const { return valid_; }
    bool Matches(std::string_view text) const;

private:
    struct Item {
        enum class Kind { Char, Any, One, Digit, Set } kind = Kind::Char;
        char32_t c = 0;
        bool negated = false;
        std::vector<std::pair<char32_t, char32_t>> ranges;  // folded, inclusive
    };
    bool MatchOne(const Item& item, char32_t c) const;

    std::vector<Item> items_;
    bool valid_ = true;
};

// The pure-ASCII check CompareText's fast path is held to (tests only).
int CompareTextWithIcu(std::string_view a, std::string_view b);

}  // namespace zelvo::dao::jet
