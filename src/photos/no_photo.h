// The picture that stands for a person without a photo in a list that shows
// photos: a white card with a thin black frame and a short text in the
// middle.
#pragma once

#include <memory>
#include <string>

#include "platform/imaging/picture.h"

namespace zelvo {

// A Width x Height card with `Text` centred, broken into lines at blanks
// where it is wider than the card. Characters the built-in font lacks show
// as '?'. Null for a size below 1 or above the picture limit.
std::shared_ptr<imaging::Picture> MakeNoPhotoPicture(const std::string& Text, int Width, int Height);

}  // namespace zelvo
