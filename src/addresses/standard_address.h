// StandardAddress: the walk from a node of the tree of places up to its
// root, and the texts made from what the walk passed.
//
// The tree lies in PostAddresses: each node has its own text only (a street,
// a house), a level (aType) and maybe a postcode, and points to its parent
// by [aParent ID] (0 or Null at a root). An address is assembled by walking
// up from the bound node and sorting each level's text into one of five
// fields:
//
//   aType  0 Country -> country (0)     3 Street, 4 Home, 5 Room -> street (4)
//          1 Region  -> region (1)      10 Index                -> postcode (8)
//          2 City    -> city (2)        any other               -> country (0)
//
// Levels are a habit of the editor, not a rule of the table: they may be
// skipped, repeated or out of order, and every text found is used.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/dao/database.h"
#include "zelvo/address_fields.h"

namespace zelvo {

// The address field kinds.
enum AddressFieldKind : std::int32_t { afCountry = 0, afRegion = 1, afCity = 2, afStreet = 4, afPostIndex = 8 };

// The field kind of a level (aType).
std::int32_t FieldKindOfLevel(std::int32_t aType);

// One node passed by the walk.
struct AddrChainItem {
    std::string Address;     // [Address], Null as ""
    std::int32_t Address_ID = 0;
    std::int32_t FieldKind = afCountry;
    std::string PostIndex;   // [PostIndex], Null as ""
};

class StandardAddress {
public:
    StandardAddress() = default;
    ~StandardAddress();
    StandardAddress(const StandardAddress&) = delete;
    StandardAddress& operator=(const StandardAddress&) = delete;

    // The text of one field kind from the last walk: for country, region,
    // city and street the non-empty texts of that kind, outermost first,
    // joined by ", "; for the postcode (8) the first one met going up from
    // the node, so the nearest wins. "" after a walk that found nothing.
    std::string GetAddrStr(std::int32_t FieldKind) const;

    // Walks from the node and gives its five fields; all empty when the node
    // is not in the book. Never fails.
    zelvo::AddressFields AddressFields(std::int32_t Address_ID);

    // Walks from the node and gives the address on one line: postcode,
    // country, region, city, street, the empty ones left out, ", " between.
    std::string GetFullAddress(std::int32_t Address_ID);

    // Opens the book of AppPath read-only with the whole of PostAddresses,
    // for a caller that has no record set to give. Engine errors are thrown.
    void InitDBSelf();

    // The application folder, shared by the whole library.
    std::string AppPath() const;
    void SetAppPath(const std::string& path);

    // The record set of PostAddresses walked. Giving one closes a book that
    // InitDBSelf opened; a given record set is never closed here.
    dao::Recordset& Recordset() { return rs_; }
    void SetRecordset(dao::Recordset rs);

    // The nodes of the last walk, the node itself first, the root last.
    const std::vector<AddrChainItem>& Chain() const { return chain_; }

private:
    void LoadAddressChain(std::int32_t Address_ID);
    bool FindAddress(std::int32_t id);
    void CloseOwnDatabase();

    dao::Recordset rs_;
    dao::Database ownDb_;
    bool ownsDb_ = false;
    std::vector<AddrChainItem> chain_;
};

}  // namespace zelvo
