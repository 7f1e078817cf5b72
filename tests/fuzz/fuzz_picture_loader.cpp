// Fuzz target: PictureFromBytes must answer any bytes with a picture or an
// error, never a crash, a sanitizer report or an unbounded allocation. Small
// pictures that decode are also encoded, to fuzz the encoder's edge cases
// (odd sizes, dummy blocks) with real shapes.
#include <cstddef>
#include <cstdint>

#include "photos/cjpeg.h"
#include "platform/imaging/picture_loader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelvo::imaging::PictureLoader loader;
    const auto picture = loader.PictureFromBytes({data, size});
    if (!picture) {
        if (loader.LastError().Number == 0 || loader.LastError().Description.empty()) __builtin_trap();
        return 0;
    }
    if (picture->Width * std::int64_t(picture->Height) != std::int64_t(picture->Pixels.size() / 3)) __builtin_trap();
    if (std::int64_t(picture->Width) * picture->Height <= 256 * 256) {
        const auto jpeg = zelvo::PictureToJpeg(*picture);
        if (jpeg.size() < 4 || jpeg[0] != 0xFF || jpeg[1] != 0xD8) __builtin_trap();
    }
    return 0;
}
