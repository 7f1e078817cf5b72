// ShowPersonCard: the one way to open the person card (frmMain). The host's
// call, the address book window, the organization window and the address
// window all open it here.
#pragma once

#include <cstdint>
#include <string>

namespace zelvo {

// Opens the card of the person `PersonalID` with the project `rProject` on
// the side `InsArcPrj`, and returns when the card is closed.
void ShowPersonCard(std::int32_t PersonalID, const std::string& rProject, bool InsArcPrj);

}  // namespace zelvo
