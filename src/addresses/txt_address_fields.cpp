#include "addresses/txt_address_fields.h"

namespace zelvo {

namespace {

void Show(ui::TextBox* box, const std::string& text) {
    if (box) box->SetText(text);
}

}  // namespace

zelvo::StandardAddress& clsTxtAddressFields::StandardAddress() {
    if (!standardAddress_) standardAddress_ = std::make_unique<zelvo::StandardAddress>();
    return *standardAddress_;
}

void clsTxtAddressFields::ChangeTxtAddr(std::int32_t Address_ID) {
    // The order matters to a window that reacts to each change.
    AddressFields fields = StandardAddress().AddressFields(Address_ID);
    Show(TxtStreet, fields.Street);
    Show(TxtCity, fields.City);
    Show(TxtCountry, fields.Country);
    Show(TxtPostIndex, fields.PostIndex);
    Show(TxtRegion, fields.Region);
}

void clsTxtAddressFields::ClearTxtFields() {
    for (ui::TextBox* box : {TxtPostIndex, TxtCountry, TxtRegion, TxtCity, TxtStreet}) Show(box, "");
}

}  // namespace zelvo
