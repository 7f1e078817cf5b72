// The layout of the person card: the name boxes, the photo and the card's
// commands in the head, the three tabs (Business, Home, Projects) under it,
// OK and Cancel at the bottom. Every widget is bound to the control of the
// same name and carries it as its object name; the card's logic is the
// model's. The controls a card keeps hidden (the list controller's list and
// project bar) are not drawn.
#pragma once

#include <QWidget>
#include <memory>

#include "platform/ui/form.h"

namespace zelvo::desktop {

// The window for `form`, a frmMain; closing it by its frame unloads the form.
std::unique_ptr<QWidget> MakeCardWindow(ui::Form& form);

}  // namespace zelvo::desktop
