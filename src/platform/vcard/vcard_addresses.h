// VCardAddresses: the card's postal addresses (ADR), numbered from 1.
//
// A position outside 1..Count throws zelvo::Error 9. `AddressTag` is a slot
// the caller may use for its own key between two passes over the list; the
// card's text never holds it.
#pragma once

#include <string>
#include <vector>

namespace zelvo::vcard {

// One address in the order the export fills it. The two leading parts are
// the post-office box and the extended address of ADR; the library leaves
// both empty when it exports.
struct VCardAddressRecord {
    std::string PostOfficeBox;
    std::string Extended;
    std::string Street;
    std::string City;
    std::string Region;
    std::string PostIndex;
    std::string Country;
    long Kind = 1;  // 1 home, 2 work
    friend bool operator==(const VCardAddressRecord&, const VCardAddressRecord&) = default;
};

class VCardAddresses {
public:
    long Count() const { return static_cast<long>(items_.size()); }

    // Appends `record`; `preferred` (the export passes 0) is written as PREF.
    void Add(VCardAddressRecord record, long preferred);

    const std::string& PostOfficeBox(long i) const { return at(i).record.PostOfficeBox; }
    const std::string& Extended(long i) const { return at(i).record.Extended; }
    const std::string& Street(long i) const { return at(i).record.Street; }
    const std::string& City(long i) const { return at(i).record.City; }
    const std::string& Region(long i) const { return at(i).record.Region; }
    const std::string& PostIndex(long i) const { return at(i).record.PostIndex; }
    const std::string& Country(long i) const { return at(i).record.Country; }
    long AddressKind(long i) const { return at(i).record.Kind; }
    bool Preferred(long i) const { return at(i).preferred; }
    long AddressTag(long i) const { return at(i).tag; }
    void SetAddressTag(long i, long tag);

    struct Entry {
        VCardAddressRecord record;
        bool preferred = false;
        long tag = 0;
        // The tag is the caller's scratch slot, not part of the card.
        friend bool operator==(const Entry& a, const Entry& b) {
            return a.record == b.record && a.preferred == b.preferred;
        }
    };
    const std::vector<Entry>& items() const { return items_; }
    friend bool operator==(const VCardAddresses&, const VCardAddresses&) = default;

private:
    const Entry& at(long i) const;
    std::vector<Entry> items_;
};

}  // namespace zelvo::vcard
