#include "platform/shell/project_paths.h"

#include "platform/shell/shell_paths.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace zelvo::testing {
namespace {

TEST(ProjectPaths, AProjectIsAFolderUnderTheRootOfItsSideThatNeverLeavesIt) {
    TempDir dir;
    std::string saved = shell::SharedShellPaths().AppPath();
    shell::SharedShellPaths().SetAppPath(dir.path().string());
    const shell::ProjectPaths& paths = shell::CurrentProjectPaths();
    std::string root = dir.path().string();
    EXPECT_EQ(paths.RootFolder(false), root + "/");
    EXPECT_EQ(paths.RootFolder(true), root + "/.archive/");
    EXPECT_EQ(paths.FolderOf("A\\B", false), root + "/A/B");
    EXPECT_EQ(paths.FolderOf("A\\B\\", true), root + "/.archive/A/B");
    EXPECT_EQ(paths.FolderOf("\\\\A", false), root + "/A");
    EXPECT_EQ(paths.FolderOf("..\\..\\etc", false), root + "/_../_../etc");
    EXPECT_EQ(paths.FolderOf(".archive\\x", false), root + "/_.archive/x");
    EXPECT_EQ(paths.FolderOf("a/b", false), root + "/a_b");
    EXPECT_EQ(paths.FolderOf("", true), root + "/.archive");
    EXPECT_EQ(paths.OtherSide("Проект\\A", false), "Проект\\A");
    shell::SharedShellPaths().SetAppPath(saved);
}

}  // namespace
}  // namespace zelvo::testing
