// The shared folder of real test data from other projects (vCards, images)
// lies beside the checkout; a checkout without it skips the tests that need
// it instead of failing them.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace zelvo::testing {

inline bool SharedImagesPresent() {
    return std::filesystem::is_directory(std::filesystem::path(ZELVO_SHARED_DATA) / "images");
}

// A genuine Jet file of the shared data (nwind.mdb, DateTestDatabase.mdb).
inline std::string SharedJetFile(const std::string& name) {
    return (std::filesystem::path(ZELVO_SHARED_DATA) / "jet" / name).string();
}

}  // namespace zelvo::testing

#define ZELVO_NEEDS_SHARED_IMAGES()                                                        \
    do {                                                                                   \
        if (!zelvo::testing::SharedImagesPresent())                                        \
            GTEST_SKIP() << "no shared images at " << ZELVO_SHARED_DATA << "/images";      \
    } while (0)

// Skips a test of Jet conversion when the shared Jet files are absent or the
// build cannot read them.
#define ZELVO_NEEDS_GENUINE_JET()                                                                   \
    do {                                                                                           \
        if (!std::filesystem::exists(zelvo::testing::SharedJetFile("nwind.mdb")))                  \
            GTEST_SKIP() << "no Jet files at " << zelvo::testing::SharedJetFile("");               \
        if (!zelvo::dao::jetfile::CanReadJetFiles())                                                \
            GTEST_SKIP() << "built without libmdb (mdbtools-dev)";                                 \
    } while (0)
