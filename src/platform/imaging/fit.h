// GetNewDimensions: the fit of a picture into a frame.
//
// A picture larger than the frame in either direction is shrunk, keeping its
// aspect ratio, to touch the frame on one side; a picture that fits is never
// enlarged. dx and dy are the margins that centre it.
#pragma once

namespace zelvo::imaging {

struct NewDimensions {
    double NewWidth = 0;
    double NewHeight = 0;
    double dx = 0;
    double dy = 0;
};

NewDimensions GetNewDimensions(double picWidth, double picHeight, double StWidth, double StHeight);

}  // namespace zelvo::imaging
