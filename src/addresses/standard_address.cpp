#include "addresses/standard_address.h"

#include <unordered_set>

#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "store/library_state.h"

namespace zelvo {

std::int32_t FieldKindOfLevel(std::int32_t aType) {
    switch (aType) {
        case 0: return afCountry;
        case 1: return afRegion;
        case 2: return afCity;
        case 3:
        case 4:
        case 5: return afStreet;
        case 10: return afPostIndex;
        default: return afCountry;
    }
}

StandardAddress::~StandardAddress() { CloseOwnDatabase(); }

std::string StandardAddress::AppPath() const { return zelvo::AppPath; }
void StandardAddress::SetAppPath(const std::string& path) { zelvo::AppPath = path; }

void StandardAddress::CloseOwnDatabase() {
    if (!ownsDb_) return;
    OnErrorResumeNext on("StandardAddress");
    on.Do([&] { ownDb_.Close(); });
    ownDb_ = {};
    rs_ = {};
    ownsDb_ = false;
}

void StandardAddress::InitDBSelf() {
    CloseOwnDatabase();
    dao::Database db = DBEngine().OpenDatabase(DatabasePath(), false, true, "Access");
    rs_ = db.OpenRecordset("PostAddresses", dao::dbOpenDynaset);
    ownDb_ = db;
    ownsDb_ = true;
}

void StandardAddress::SetRecordset(dao::Recordset rs) {
    CloseOwnDatabase();
    rs_ = std::move(rs);
}

bool StandardAddress::FindAddress(std::int32_t id) {
    try {
        if (!rs_ || rs_.AbsolutePosition() == -1) return false;
        rs_.MoveFirst();
        rs_.FindFirst("[Address ID]=" + std::to_string(id));
        return !rs_.NoMatch();
    } catch (const Error& e) {
        RecordSwallowed(e, "StandardAddress.FindAddress");
        Err().Clear();
        return false;
    }
}

void StandardAddress::LoadAddressChain(std::int32_t Address_ID) {
    chain_.clear();
    // The editor cannot make a cycle, but a damaged or hand-edited book can:
    // the walk stops at the first node it meets again rather than go round.
    std::unordered_set<std::int32_t> seen;
    std::int32_t id = Address_ID;
    while (id >= 1 && seen.insert(id).second && FindAddress(id)) {
        AddrChainItem item;
        try {
            item.Address_ID = ValueConv::ToLong(rs_("Address ID"));
            item.Address = ValueConv::ToText(rs_("Address"));
            item.FieldKind = FieldKindOfLevel(ValueConv::ToLong(rs_("aType")));
            item.PostIndex = ValueConv::ToText(rs_("PostIndex"));
            id = ValueConv::ToLong(rs_("aParent ID"));
        } catch (const Error& e) {
            RecordSwallowed(e, "StandardAddress.LoadAddressChain");
            Err().Clear();
            id = 0;
        }
        chain_.push_back(std::move(item));
    }
}

std::string StandardAddress::GetAddrStr(std::int32_t FieldKind) const {
    if (FieldKind == afPostIndex) {
        for (const AddrChainItem& item : chain_)
            if (!item.PostIndex.empty()) return item.PostIndex;
        return {};
    }
    std::string result;
    for (auto it = chain_.rbegin(); it != chain_.rend(); ++it) {
        if (it->FieldKind != FieldKind || it->Address.empty()) continue;
        if (!result.empty()) result += ", ";
        result += it->Address;
    }
    return result;
}

zelvo::AddressFields StandardAddress::AddressFields(std::int32_t Address_ID) {
    LoadAddressChain(Address_ID);
    zelvo::AddressFields fields;
    if (chain_.empty()) return fields;
    fields.Street = GetAddrStr(afStreet);
    fields.City = GetAddrStr(afCity);
    fields.Country = GetAddrStr(afCountry);
    fields.PostIndex = GetAddrStr(afPostIndex);
    fields.Region = GetAddrStr(afRegion);
    return fields;
}

std::string StandardAddress::GetFullAddress(std::int32_t Address_ID) {
    LoadAddressChain(Address_ID);
    // Each piece goes in front of what stands, so the line reads from the
    // postcode to the street.
    std::string line;
    for (std::int32_t kind : {afStreet, afCity, afRegion, afCountry, afPostIndex}) {
        std::string piece = GetAddrStr(kind);
        if (piece.empty()) continue;
        line = line.empty() ? piece : piece + ", " + line;
    }
    return line;
}

}  // namespace zelvo
