#include "platform/shell/project_paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "platform/shell/shell_paths.h"
#include "platform/ui/project_picker.h"
#include "platform/ui/scripted_host.h"
#include "platform/ui/terminal_host.h"
#include "support/temp_dir.h"

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

namespace zelvo::testing {
namespace {

TEST(ProjectPicker, TheTerminalShowsTheTreeAndTakesANumberOrAPath) {
    TempDir dir;
    std::string root = dir.path().string();
    for (const char* d : {"A/B", "AB", ".archive/Old", "A/B/C"}) std::filesystem::create_directories(dir.path() / d);
    std::istringstream in("3\nZ\\Y\\\n");
    std::ostringstream out;
    ui::TerminalUiHost host(in, out, true);
    ui::ScopedUiHost scoped(host);
    ui::ProjectPicker picker;
    picker.SetRootFolder(root + "/");
    picker.SetTitle("Pick");
    picker.Show();
    EXPECT_FALSE(picker.Cancelled());
    EXPECT_EQ(picker.ProjectPath(), "A\\B\\C");
    EXPECT_EQ(picker.Folder(), root + "/A/B/C");
    EXPECT_EQ(out.str().find("Old"), std::string::npos) << out.str();
    EXPECT_LT(out.str().find("1  A\n"), out.str().find("4  AB\n")) << out.str();

    picker.Show();  // a typed path; the trailing backslash goes
    EXPECT_EQ(picker.ProjectPath(), "Z\\Y");
    picker.Show();  // end of input
    EXPECT_TRUE(picker.Cancelled());
    EXPECT_EQ(picker.ProjectPath(), "");
}

TEST(ProjectPicker, WithoutATerminalOnlyAnAnswerGivenBeforehandChooses) {
    std::istringstream in;
    std::ostringstream out;
    ui::TerminalUiHost host(in, out, false, {"Проект"});
    ui::ScopedUiHost scoped(host);
    ui::ProjectPicker& picker = ui::SharedProjectPicker();
    picker.SetRootFolder("/r/.archive/");
    picker.Show();
    EXPECT_EQ(picker.Folder(), "/r/.archive/Проект");
    picker.Show();
    EXPECT_TRUE(picker.Cancelled());
}

}  // namespace
}  // namespace zelvo::testing
