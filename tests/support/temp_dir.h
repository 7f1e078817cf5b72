// A folder of its own for one test, removed with everything in it when the
// test ends.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace zelvo::testing {

class TempDir {
public:
    TempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "zelvo-test-XXXXXX").string();
        char* made = mkdtemp(pattern.data());
        path_ = made ? made : pattern;
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string File(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

}  // namespace zelvo::testing
