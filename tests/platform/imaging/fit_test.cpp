#include <gtest/gtest.h>

#include "platform/imaging/fit.h"

namespace zelvo::imaging {
namespace {

struct FitCase {
    const char* name;
    double picW, picH, stW, stH;
    double newW, newH, dx, dy;
};

TEST(GetNewDimensions, FitsAndCentres) {
    const FitCase cases[] = {
        {"smaller in both directions stays and is centred", 100, 50, 200, 200, 100, 50, 50, 75},
        {"exactly the frame", 200, 200, 200, 200, 200, 200, 0, 0},
        {"wide picture is bounded by the width", 400, 300, 200, 200, 200, 150, 0, 25},
        {"tall picture is bounded by the height", 300, 400, 200, 200, 150, 200, 25, 0},
        {"same shape, larger, fills the frame", 400, 200, 200, 100, 200, 100, 0, 0},
        {"taller than the frame only", 100, 300, 200, 200, 200.0 / 3, 200, (200 - 200.0 / 3) / 2, 0},
    };
    for (const FitCase& c : cases) {
        const NewDimensions d = GetNewDimensions(c.picW, c.picH, c.stW, c.stH);
        EXPECT_DOUBLE_EQ(d.NewWidth, c.newW) << c.name;
        EXPECT_DOUBLE_EQ(d.NewHeight, c.newH) << c.name;
        EXPECT_DOUBLE_EQ(d.dx, c.dx) << c.name;
        EXPECT_DOUBLE_EQ(d.dy, c.dy) << c.name;
    }
}

}  // namespace
}  // namespace zelvo::imaging
