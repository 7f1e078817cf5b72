// The views kept in Custom.ini: read back after a write, other entries kept
// whole, a one-byte file turned UTF-16 at the first write.
#include "hostservices/view_settings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/shell/shell_paths.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

class ViewSettingsTest : public ::testing::Test {
protected:
    std::string App() const { return dir_.File("app"); }
    std::string Ini() const {
        shell::SharedShellPaths().SetAppPath(App());
        return shell::ShellPaths::AddSeparator(shell::SharedShellPaths().GetSettingsFolder()) + "Custom.ini";
    }
    std::string Bytes() const {
        std::ifstream in(Ini(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    void WriteRaw(const std::string& bytes) {
        std::filesystem::create_directories(std::filesystem::path(Ini()).parent_path());
        std::ofstream(Ini(), std::ios::binary) << bytes;
    }
    TempDir dir_;
};

TEST_F(ViewSettingsTest, AMissingFileGivesTheDefaultAndTheFirstWriteMakesItUtf16) {
    EXPECT_EQ(ReadViewSetting(App(), 1, 2), 2);
    WriteViewSetting(App(), 1, 0);
    EXPECT_EQ(ReadViewSetting(App(), 1, 2), 0);
    EXPECT_EQ(ReadViewSetting(App(), 2, 3), 3);  // another list keeps its default
    const std::string bytes = Bytes();
    ASSERT_GE(bytes.size(), 2u);
    EXPECT_EQ(bytes.substr(0, 2), "\xFF\xFE");
    EXPECT_EQ(bytes.substr(2, 10), std::string("[\0Z\0E\0L\0V\0", 10));
}

TEST_F(ViewSettingsTest, AnAnsiFileKeepsItsEntriesWholeAndANonNumberReadsAsZero) {
    WriteRaw("[Other]\r\nName=M\xC3\xBCller\r\n[ZELVO]\r\nView2=3\r\nView1=list\r\n");
    EXPECT_EQ(ReadViewSetting(App(), 1, 2), 0);
    EXPECT_EQ(ReadViewSetting(App(), 2, 0), 3);
    WriteViewSetting(App(), 1, 2);
    WriteViewSetting(App(), 3, 0);
    EXPECT_EQ(ReadViewSetting(App(), 1, 0), 2);
    EXPECT_EQ(ReadViewSetting(App(), 2, 0), 3);
    EXPECT_EQ(ReadViewSetting(App(), 3, 2), 0);
    const std::string bytes = Bytes();
    // The other section's text survives the change of encoding: ü is one
    // UTF-16 unit.
    EXPECT_NE(bytes.find(std::string("M\0\xFC\0l\0", 6)), std::string::npos);
    EXPECT_EQ(bytes.substr(0, 2), "\xFF\xFE");
}

}  // namespace
}  // namespace zelvo::testing
