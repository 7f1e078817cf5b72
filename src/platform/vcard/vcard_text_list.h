// VCardTextList: an ordered list of texts, numbered from 1.
//
// The card's organization levels live in one (top level first), and the
// import also uses a free-standing one as a plain splitter. Items are UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelvo::vcard {

class VCardTextList {
public:
    // Number of items.
    long Count() const { return static_cast<long>(items_.size()); }

    // Replaces the items by the pieces of `text` cut at every `delimiter`.
    // An empty text gives no items; an empty delimiter gives the whole text
    // as one item; "a,,b" gives three items, the middle one empty.
    void Parse(std::string_view text, std::string_view delimiter);

    // Removes every item.
    void Clear() { items_.clear(); }

    // The item at `i` (from 1). Throws zelvo::Error 9 outside 1..Count.
    const std::string& Item(long i) const;

    // Appends one item (the reader fills ORG levels this way).
    void Add(std::string text) { items_.push_back(std::move(text)); }

    const std::vector<std::string>& items() const { return items_; }
    friend bool operator==(const VCardTextList&, const VCardTextList&) = default;

private:
    std::vector<std::string> items_;
};

}  // namespace zelvo::vcard
