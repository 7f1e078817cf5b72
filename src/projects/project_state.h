// The project choice the windows share: the last filter and the last
// project picked in any project bar or membership bar, so that the next
// window or picker opens where the person left off.
#pragma once

#include <string>

#include "zelvo/enums.h"

namespace zelvo {

// What the person lists show: AllPersons, NoPrj or CurPrj.
extern AddrFiltr PrjFilter;
// The project last picked; "" when none was.
extern std::string CurrentPrjPath;

}  // namespace zelvo
