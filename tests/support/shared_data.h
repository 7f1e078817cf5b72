// The shared folder of real test data from other projects (vCards, images)
// lies beside the checkout; a checkout without it skips the tests that need
// it instead of failing them.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>

namespace zelvo::testing {

inline bool SharedImagesPresent() {
    return std::filesystem::is_directory(std::filesystem::path(ZELVO_SHARED_DATA) / "images");
}

}  // namespace zelvo::testing

#define ZELVO_NEEDS_SHARED_IMAGES()                                                        \
    do {                                                                                   \
        if (!zelvo::testing::SharedImagesPresent())                                        \
            GTEST_SKIP() << "no shared images at " << ZELVO_SHARED_DATA << "/images";      \
    } while (0)
