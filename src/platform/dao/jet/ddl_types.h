// Jet's DDL type names and the DAO field types they make.
#pragma once

#include <string_view>

namespace zelvo::dao::jet {

struct DdlType {
    int type = 0;          // DAO type code; 0 when the name is unknown
    bool counter = false;  // Counter / AutoIncrement
    bool sized = false;    // takes a size: Text(n)
};

// Looks a type name up without regard to case ("Text", "LONG", "YesNo", …).
DdlType LookupDdlType(std::string_view name);

}  // namespace zelvo::dao::jet
