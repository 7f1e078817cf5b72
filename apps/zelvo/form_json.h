// A window's state as one JSON object, for `zelvo ui`'s dump:
//   {"form": NAME, "caption": …, "controls": {CONTROL: …}}
// with each registered control by its kind:
//   list      {"rows": [{tag, text, icon, smallIcon, subItems, selected}],
//              "enabled", "visible"}
//   text box  {"text", "enabled", "visible", "locked"}
//   toolbar   {"buttons": {KEY: {pressed, enabled, visible, image, tip,
//              caption}}, "enabled", "visible"}
//   button    {"caption", "enabled", "visible"}; a label the same
//   combo box {"text", "listIndex", "list", "enabled", "visible"}
//   tab strip {"tab", "tabs": [caption…], "enabled", "visible"}
//   status bar{"simpleText", "panels", "visible"}
//   menu      {"caption", "checked", "enabled", "visible", "items": {…}}
//   picture   {"width", "height", "picture": true/false}
#pragma once

#include <string>

#include "platform/ui/form.h"

namespace zelvo::cli {

std::string FormJson(const ui::Form& form);

}  // namespace zelvo::cli
