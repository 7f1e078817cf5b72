#include "platform/vcard/vcard_addresses.h"

#include "platform/vcard/vcard_index.h"

namespace zelvo::vcard {

void VCardAddresses::Add(VCardAddressRecord record, long preferred) {
    items_.push_back({std::move(record), preferred != 0, 0});
}

void VCardAddresses::SetAddressTag(long i, long tag) {
    items_[CheckedIndex(i, items_.size(), "VCardAddresses.AddressTag")].tag = tag;
}

const VCardAddresses::Entry& VCardAddresses::at(long i) const {
    return items_[CheckedIndex(i, items_.size(), "VCardAddresses")];
}

}  // namespace zelvo::vcard
