#include "projects/project_state.h"

namespace zelvo {

AddrFiltr PrjFilter = AllPersons;
std::string CurrentPrjPath;

}  // namespace zelvo
