// clsTxtAddressFields: five text boxes of a window that show one address,
// filled from the tree of places.
#pragma once

#include <cstdint>
#include <memory>

#include "addresses/standard_address.h"
#include "platform/ui/simple_controls.h"

namespace zelvo {

class clsTxtAddressFields {
public:
    // The boxes, not owned; a box left unset is passed over.
    ui::TextBox* TxtPostIndex = nullptr;
    ui::TextBox* TxtCountry = nullptr;
    ui::TextBox* TxtRegion = nullptr;
    ui::TextBox* TxtCity = nullptr;
    ui::TextBox* TxtStreet = nullptr;

    // The PostAddresses record set to walk, handed on to the walker.
    void SetRecordset(dao::Recordset rs) { StandardAddress().SetRecordset(std::move(rs)); }
    // The walker, made on first use.
    zelvo::StandardAddress& StandardAddress();

    // Shows the address of the node in the five boxes (street, city,
    // country, postcode, region, in that order); a node not in the book
    // (0 among them) empties them.
    void ChangeTxtAddr(std::int32_t Address_ID);
    // Empties the five boxes.
    void ClearTxtFields();

private:
    std::unique_ptr<zelvo::StandardAddress> standardAddress_;
};

}  // namespace zelvo
