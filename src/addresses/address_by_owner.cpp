#include "addresses/address_by_owner.h"

#include "addresses/standard_address.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "store/library_state.h"

namespace zelvo {

std::string SqlAddressBindings(std::int32_t Owner_ID, std::int32_t OwnerType) {
    return "Select * from AddressesOwners  Where AddressesOwners.[Owner ID]=" + std::to_string(Owner_ID) +
           " And AddressesOwners.[OwnerType]=" + std::to_string(OwnerType) + " ;";
}

AddressByOwner::AddressByOwner() = default;

AddressByOwner::~AddressByOwner() {
    // The walker's record set lives on the database closed here; it goes first.
    standardAddress_.reset();
    if (dbOpen_) {
        OnErrorResumeNext on("AddressByOwner");
        on.Do([&] { db_.Close(); });
    }
}

std::string AddressByOwner::AppPath() const { return zelvo::AppPath; }
void AddressByOwner::SetAppPath(const std::string& path) { zelvo::AppPath = path; }

void AddressByOwner::InitDB() {
    if (dbOpen_) {
        standardAddress_.reset();
        rsAddresses_ = {};
        OnErrorResumeNext on("AddressByOwner.InitDB");
        on.Do([&] { db_.Close(); });
        dbOpen_ = false;
    }
    db_ = DBEngine().OpenDatabase(DatabasePath(), false, true, "Access");
    dbOpen_ = true;
}

bool AddressByOwner::SelectOwner(std::int32_t Owner_ID, std::int32_t OwnerType) {
    if (!dbOpen_) throw Error(91, "Object variable or With block variable not set: InitDB first", "AddressByOwner");
    rsAddresses_ = db_.OpenRecordset(SqlAddressBindings(Owner_ID, OwnerType), dao::dbOpenDynaset);
    if (!standardAddress_) standardAddress_ = std::make_unique<StandardAddress>();
    standardAddress_->SetRecordset(db_.OpenRecordset("PostAddresses", dao::dbOpenDynaset));
    return rsAddresses_.RecordCount() > 0;
}

std::int32_t AddressByOwner::Address_ID() const {
    if (!rsAddresses_) return 0;
    OnErrorResumeNext on("AddressByOwner.Address_ID");
    if (on.Resume([&] { return rsAddresses_.RecordCount(); }) == 0) return 0;
    return on.Resume([&] { return ValueConv::ToLong(rsAddresses_("Address ID")); });
}

zelvo::AddressFields AddressByOwner::AddressFields() {
    if (!standardAddress_) return {};
    return standardAddress_->AddressFields(Address_ID());
}

}  // namespace zelvo
