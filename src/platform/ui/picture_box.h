// A picture control of a window: a size, a back colour and the picture it
// shows. The photo code draws into one to scale a person's photo.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/imaging/picture.h"

namespace zelvo::ui {

struct PictureBox {
    int Width = 0;   // twips
    int Height = 0;  // twips
    std::int32_t BackColor = 0xFFFFFF;  // 0x00BBGGRR
    std::shared_ptr<imaging::Picture> Picture;
    // What has been drawn on the box (its persistent drawing surface); a
    // caller that wants to keep a drawing makes it the Picture.
    std::shared_ptr<imaging::Picture> Image;
    int BorderStyle = 0;  // 0 none, 1 a fixed single line
};

}  // namespace zelvo::ui
