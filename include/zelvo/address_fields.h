// AddressFields: one postal address as the five texts a letter or a form
// wants. It has no behaviour; StandardAddress and AddressByOwner fill it from
// the tree of places.
#pragma once

#include <string>

namespace zelvo {

class AddressFields {
public:
    std::string PostIndex;  // the postcode nearest the node
    std::string Street;     // street, house and apartment, outermost first, ", " between
    std::string City;
    std::string Country;
    std::string Region;

    bool operator==(const AddressFields&) const = default;
};

}  // namespace zelvo
