// The actions that leave the address book: help, letters, web pages, the
// launcher and UniDir, with the desktop replaced by a recorder.
#include "hostservices/shell_actions.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/shell/desktop_services.h"
#include "platform/shell/lng_res.h"
#include "platform/ui/scripted_host.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

namespace fs = std::filesystem;

void Write(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

class ShellActionsTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (const char* v = std::getenv("ZELVO_LANG_DIR")) savedLangDir_ = v;
        setenv("ZELVO_LANG_DIR", dir_.File("lang").c_str(), 1);
        setenv("ZELVO_LANG", "en", 1);
        shell::ForgetCatalogues();
        previous_ = shell::SetDesktopServices(&desktop_);
    }
    void TearDown() override {
        shell::SetDesktopServices(previous_);
        if (savedLangDir_) setenv("ZELVO_LANG_DIR", savedLangDir_->c_str(), 1);
        else unsetenv("ZELVO_LANG_DIR");
        unsetenv("ZELVO_LANG");
        shell::ForgetCatalogues();
    }
    std::string App() const { return dir_.File("app"); }
    void Settings(const std::string& text) { Write(fs::path(App()) / ".settings" / "Shell.ini", text); }

    TempDir dir_;
    shell::RecordingDesktopServices desktop_;
    shell::DesktopServices* previous_ = nullptr;
    std::optional<std::string> savedLangDir_;
    ui::ScriptedUiHost host_;
    ui::ScopedUiHost scope_{host_};
};

TEST_F(ShellActionsTest, HelpOpensTheManualAtItsTopicOrWarnsWhenThereIsNone) {
    ShowHelp("frmMain.HTM");
    ASSERT_EQ(host_.Log().size(), 1u);
    EXPECT_EQ(host_.Log()[0].buttons, 48);
    EXPECT_EQ(host_.Log()[0].prompt, "The help file\nzelvo.html\nwas not found!");
    EXPECT_EQ(host_.Log()[0].title, "Zelvo");
    EXPECT_TRUE(desktop_.Calls().empty());

    Write(fs::path(dir_.File("lang")) / "en" / "zelvo.html", "<html></html>");
    ShowHelp("frmMain.HTM");
    EXPECT_EQ(host_.Log().size(), 1u);
    ASSERT_EQ(desktop_.Calls().size(), 1u);
    EXPECT_EQ(desktop_.Calls()[0].action, "help");
    EXPECT_EQ(desktop_.Calls()[0].Field("file"), dir_.File("lang") + "/en/zelvo.html");
    EXPECT_EQ(desktop_.Calls()[0].Field("topic"), "frmMain.HTM");
}

TEST_F(ShellActionsTest, ALetterGoesEitherToTheMailClientOrToTheHostNeverBoth) {
    MailAction("ivan@example.org", App(), "A\\B", true);  // no settings: the host's letter window
    ASSERT_EQ(desktop_.Calls().size(), 1u);
    const auto& letter = desktop_.Calls()[0];
    EXPECT_EQ(letter.action, "letter");
    EXPECT_EQ(letter.Field("address"), "ivan@example.org");
    EXPECT_EQ(letter.Field("project"), "A\\B");
    EXPECT_EQ(letter.Field("filter"), "2");
    EXPECT_EQ(letter.Field("inArchive"), "True");

    Settings("[Mail]\nUseExternalMailer=True\n");
    MailAction("ivan@example.org", App(), "A\\B", false);
    ASSERT_EQ(desktop_.Calls().size(), 2u);
    EXPECT_EQ(desktop_.Calls()[1].action, "mail");
    EXPECT_EQ(desktop_.Calls()[1].Field("url"), "mailto:ivan@example.org");

    MailAction("", App(), "", false);  // no address, no action
    EXPECT_EQ(desktop_.Calls().size(), 2u);
}

TEST_F(ShellActionsTest, TheLauncherGetsTheParameterTextAndIsSilentWhenNoneIsSet) {
    EXPECT_EQ(LauncherParameters({"7", "0", "-1"}), "42;CustomPostrel.cPostrel*LoadABPack*7*0*-1");
    StartLauncher({"7", "0", "-1"}, App());
    EXPECT_TRUE(desktop_.Calls().empty());
    EXPECT_TRUE(host_.Log().empty());

    Settings("[Launcher]\nCommand=/opt/post/launch\n");
    StartLauncher({"12", "0", "2", "A\\B", "1", "0"}, App());
    ASSERT_EQ(desktop_.Calls().size(), 1u);
    EXPECT_EQ(desktop_.Calls()[0].Field("command"), "/opt/post/launch");
    EXPECT_EQ(desktop_.Calls()[0].Field("parameters"), "42;CustomPostrel.cPostrel*LoadABPack*12*0*2*A\\B*1*0");
}

TEST_F(ShellActionsTest, UniDirFindsTheFirstMatchWithTheAttributesAsked) {
    fs::path d = dir_.File("files");
    Write(d / "b.JPG", "x");
    Write(d / "a.jpg", "x");
    Write(d / ".hidden.jpg", "x");
    fs::create_directories(d / "aa.jpg.d");
    EXPECT_EQ(UniDir((d / "*.jpg").string()), "a.jpg");
    EXPECT_EQ(UniDir((d / "B.jpg").string()), "b.JPG");  // names compare without regard to case
    EXPECT_EQ(UniDir((d / ".h*").string()), "");
    EXPECT_EQ(UniDir((d / ".h*").string(), vbHidden), ".hidden.jpg");
    EXPECT_EQ(UniDir((d / "aa*").string()), "");
    EXPECT_EQ(UniDir((d / "aa*").string(), vbDirectory), "aa.jpg.d");
    EXPECT_EQ(UniDir((d / "none" / "*").string()), "");
}

TEST(SpawnDetachedTest, TellsWhetherTheProgramStarted) {
    std::string error;
    EXPECT_TRUE(shell::SpawnDetached({"true"}, &error)) << error;
    EXPECT_FALSE(shell::SpawnDetached({"/nonexistent/zelvo-no-such-program"}, &error));
    EXPECT_NE(error.find("zelvo-no-such-program"), std::string::npos) << error;
}

}  // namespace
}  // namespace zelvo::testing
