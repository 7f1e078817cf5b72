// The layout of the address book window: the main toolbar on top, the
// project bar with the project's path under it, the persons on the left,
// the person's tabs on the right, the dialog buttons and the status bar at
// the bottom. Every widget is bound to the control of the same name (and
// carries it as its object name, so tests find it); the window's logic is
// the model's.
#pragma once

#include <QWidget>
#include <memory>

#include "platform/ui/form.h"

namespace zelvo::desktop {

// The window for `form`, a frmPersons; closing it by its frame unloads the
// form.
std::unique_ptr<QWidget> MakePersonsWindow(ui::Form& form);

}  // namespace zelvo::desktop
