#include "platform/imaging/fit.h"

namespace zelvo::imaging {

NewDimensions GetNewDimensions(double picWidth, double picHeight, double StWidth, double StHeight) {
    NewDimensions d;
    if (picWidth <= StWidth && picHeight <= StHeight) {
        d.NewWidth = picWidth;
        d.NewHeight = picHeight;
    } else {
        // The ratios compare the shapes: a picture relatively taller than the
        // frame is bounded by the frame's height, a wider one by its width.
        const double r1 = picHeight / picWidth;
        const double r2 = StHeight / StWidth;
        if (r1 > r2) {
            d.NewHeight = StHeight;
            d.NewWidth = (r2 / r1) * StWidth;
        } else if (r1 < r2) {
            d.NewWidth = StWidth;
            d.NewHeight = (r1 / r2) * StHeight;
        } else {
            d.NewWidth = StWidth;
            d.NewHeight = StHeight;
        }
    }
    d.dx = (StWidth - d.NewWidth) / 2;
    d.dy = (StHeight - d.NewHeight) / 2;
    return d;
}

}  // namespace zelvo::imaging
