// The pictures of the image keys the windows name ("User", "OpenFold",
// "Archive", …). The library names a picture by key only; the desktop draws
// it from the icon theme, falling back to the style's own pictures.
#pragma once

#include <QIcon>
#include <string>

namespace zelvo::desktop {

QIcon IconForKey(const std::string& key);

}  // namespace zelvo::desktop
