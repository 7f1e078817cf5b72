// The dispatch descriptors of the public classes that read what owners have:
// dbPhoto, AddressByOwner, AddressFields; and of the two kinds of object their
// members give back that are not public classes themselves: a picture and a
// record set.
#pragma once

#include "zelvo/dispatch.h"

namespace zelvo {

const DispClass& dbPhotoClass();
const DispClass& AddressByOwnerClass();
const DispClass& AddressFieldsClass();

// A picture given back by a member (read-only Width and Height in pixels).
// Its handle is a DispatchHandle<imaging::Picture>. Not creatable.
const DispClass& PictureClass();
// A record set given back by a member: its position and the moves.
// Not creatable.
const DispClass& RecordsetClass();

}  // namespace zelvo
