#include "platform/dao/jet/like.h"

#include "platform/dao/jet/jet_sql.h"
#include "platform/dao/jet/text_util.h"

namespace zelvo::dao::jet {

LikePattern::LikePattern(std::string_view pattern) {
    std::u32string p = DecodeUtf8(pattern);
    std::size_t i = 0;
    while (i < p.size()) {
        char32_t c = p[i];
        Item item;
        if (c == '*') {
            item.kind = Item::Kind::Any;
            ++i;
            // "**" is one star: keeps the matcher's work linear in stars.
            if (!items_.empty() && items_.back().kind == Item::Kind::Any) continue;
        } else if (c == '?') {
            item.kind = Item::Kind::One;
            ++i;
        } else if (c == '#') {
            item.kind = Item::Kind::Digit;
            ++i;
        } else if (c == '[') {
            std::size_t close = p.find(U']', i + 1);
            if (close == std::u32string::npos) {
                valid_ = false;
                items_.clear();
                return;
            }
            std::u32string_view body(p.data() + i + 1, close - i - 1);
            i = close + 1;
            if (body.empty()) continue;  // [] is the empty string
            item.kind = Item::Kind::Set;
            if (body.size() > 1 && body[0] == '!') {
                item.negated = true;
                body.remove_prefix(1);
            }
            for (std::size_t k = 0; k < body.size(); ++k) {
                char32_t lo = FoldCase(body[k]);
                if (k + 2 < body.size() && body[k + 1] == '-') {
                    char32_t hi = FoldCase(body[k + 2]);
                    item.ranges.emplace_back(lo, hi);
                    k += 2;
                } else {
                    item.ranges.emplace_back(lo, lo);
                }
            }
        } else {
            item.kind = Item::Kind::Char;
            item.c = FoldCase(c);
            ++i;
        }
        items_.push_back(std::move(item));
    }
}

bool LikePattern::MatchOne(const Item& item, char32_t c) const {
    switch (item.kind) {
    case Item::Kind::Char: return item.c == c;
    case Item::Kind::One: return true;
    case Item::Kind::Digit: return c >= '0' && c <= '9';
    case Item::Kind::Set: {
        bool in = false;
        for (const auto& [lo, hi] : item.ranges)
            if (c >= lo && c <= hi) in = true;
        return in != item.negated;
    }
    case Item::Kind::Any: return true;
    }
    return false;
}

bool LikePattern::Matches(std::string_view text) const {
    if (!valid_) return false;
    std::u32string t = FoldCase(DecodeUtf8(text));
    // Every item but * takes exactly one character, so the classic
    // one-backtrack-point matcher is exact and O(n·m) at worst.
    std::size_t ti = 0, pi = 0;
    std::size_t starP = std::string::npos, starT = 0;
    while (ti < t.size()) {
        if (pi < items_.size() && items_[pi].kind == Item::Kind::Any) {
            starP = pi++;
            starT = ti;
        } else if (pi < items_.size() && MatchOne(items_[pi], t[ti])) {
            ++pi;
            ++ti;
        } else if (starP != std::string::npos) {
            pi = starP + 1;
            ti = ++starT;
        } else {
            return false;
        }
    }
    while (pi < items_.size() && items_[pi].kind == Item::Kind::Any) ++pi;
    return pi == items_.size();
}

bool JetLike(std::string_view text, std::string_view pattern) { return LikePattern(pattern).Matches(text); }

}  // namespace zelvo::dao::jet
