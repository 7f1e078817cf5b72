// AddressByOwner: the postal addresses of a person or an organization, for
// a host that wants them as texts.
//
// An owner is bound to nodes of the tree of places by rows of
// AddressesOwners; an owner may have several. The host calls InitDB once,
// then SelectOwner for each owner it is interested in, and reads
// AddressFields; moving rsAddresses on and reading AddressFields again
// gives the owner's next address.
//
//   AddressByOwner a;
//   a.SetAppPath(dir);
//   a.InitDB();
//   if (a.SelectOwner(5, oPersonal_ID)) print(a.AddressFields().City);
//
// Hosts reach AddressByOwner by name through the dispatch registry (CreateObject,
// zelvo call --class, the Python module). Its typed C++ face stays inside
// the library until it keeps its database behind a pointer of its own:
// this header still needs the engine's record set types.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/dao/database.h"
#include "zelvo/address_fields.h"

namespace zelvo {

// The bindings of an owner to nodes of the tree of places (AddressesOwners).
std::string SqlAddressBindings(std::int32_t Owner_ID, std::int32_t OwnerType);

class StandardAddress;

class AddressByOwner {
public:
    AddressByOwner();
    ~AddressByOwner();
    AddressByOwner(const AddressByOwner&) = delete;
    AddressByOwner& operator=(const AddressByOwner&) = delete;

    // The application folder, shared by the whole library (the book is
    // found from it).
    std::string AppPath() const;
    void SetAppPath(const std::string& path);

    // Opens the book of AppPath read-only. The engine's errors are thrown
    // (3024 when there is no book).
    void InitDB();

    // Opens the bindings of the owner (OwnerType 0 person, 1 organization)
    // and stays on the first. True when the owner has at least one. Throws
    // 91 before InitDB.
    bool SelectOwner(std::int32_t Owner_ID, std::int32_t OwnerType);

    // The bindings of the selected owner, for the caller to move through;
    // an empty Recordset before SelectOwner.
    dao::Recordset& rsAddresses() { return rsAddresses_; }

    // [Address ID] of the current binding; 0 when there is none.
    std::int32_t Address_ID() const;

    // The address of the current binding; five empty texts when there is
    // none or its node is gone.
    zelvo::AddressFields AddressFields();

private:
    dao::Database db_;
    dao::Recordset rsAddresses_;
    std::unique_ptr<StandardAddress> standardAddress_;
    bool dbOpen_ = false;
};

}  // namespace zelvo
