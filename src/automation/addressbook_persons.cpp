// PLACEHOLDER until intake lands: the intake branch replaces this file.
#include "zelvo/addressbook.h"
#include "zelvo/error.h"

namespace zelvo {

void cAddressbook::AddPersonbyStrMail(std::string&, ui::DataControl*, ui::DataControl*, ui::DataControl*) {
    throw Error(5, "AddPersonbyStrMail is not built yet.", "cAddressbook");
}
void cAddressbook::AddNewPerson() { throw Error(5, "AddNewPerson is not built yet.", "cAddressbook"); }
void cAddressbook::DeletePerson(std::int32_t, ui::DataControl*, ui::DataControl*, ui::DataControl*) {
    throw Error(5, "DeletePerson is not built yet.", "cAddressbook");
}

}  // namespace zelvo
