// PLACEHOLDER until the card lands: the person card branch replaces this file.
#include "personcard/show_person_card.h"

#include "zelvo/error.h"

namespace zelvo {

void ShowPersonCard(std::int32_t, const std::string&, bool) {
    throw Error(5, "The person card is not built yet.", "ShowPersonCard");
}

}  // namespace zelvo
