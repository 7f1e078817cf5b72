#include "platform/vcard/vcard_text_list.h"

#include "platform/vcard/vcard_index.h"

namespace zelvo::vcard {

void VCardTextList::Parse(std::string_view text, std::string_view delimiter) {
    items_.clear();
    if (text.empty()) return;
    if (delimiter.empty()) {
        items_.emplace_back(text);
        return;
    }
    std::size_t start = 0;
    for (;;) {
        std::size_t at = text.find(delimiter, start);
        if (at == std::string_view::npos) {
            items_.emplace_back(text.substr(start));
            return;
        }
        items_.emplace_back(text.substr(start, at - start));
        start = at + delimiter.size();
    }
}

const std::string& VCardTextList::Item(long i) const {
    return items_[CheckedIndex(i, items_.size(), "VCardTextList.Item")];
}

}  // namespace zelvo::vcard
