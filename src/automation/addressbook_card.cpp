// The card member of cAddressbook.
#include "personcard/show_person_card.h"
#include "zelvo/addressbook.h"

namespace zelvo {

void cAddressbook::ShowPersProp(std::int32_t Personal_ID) {
    EnterCall();
    ShowPersonCard(Personal_ID, rProject, InsArcPrj);
}

}  // namespace zelvo
