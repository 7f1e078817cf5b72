#include "personcard/show_person_card.h"

#include "personcard/frm_main.h"
#include "platform/ui/ui_host.h"

namespace zelvo {

void ShowPersonCard(std::int32_t PersonalID, const std::string& rProject, bool InsArcPrj) {
    frmMain card;
    card.ShowMode = 1;
    card.Personal_ID = PersonalID;
    card.rProject = rProject;
    card.InsArcPrj = InsArcPrj;
    card.CancelCompressing = true;
    card.AllPersons = rProject.empty();
    card.Form_Load();
    // A card opens on the Home tab.
    card.SSTab1.SetTab(1);
    card.ReadData();
    // The host shows the card and lets the person work in it until it is
    // hidden or closed; the host's other windows stay usable meanwhile.
    ui::CurrentUiHost().RunWindow(card);
    card.ShowMode = 1;
    card.Unload();
}

}  // namespace zelvo
