#include <gtest/gtest.h>

#include <sstream>

#include "platform/ui/scripted_host.h"
#include "platform/ui/terminal_host.h"

namespace zelvo::ui {
namespace {

MessageBoxRequest Msg(std::string prompt, int style, std::string title = {}) {
    MessageBoxRequest r;
    r.prompt = std::move(prompt);
    r.buttons = style;
    r.title = std::move(title);
    return r;
}

InputBoxRequest Ask(std::string prompt, std::string title = {}, std::string defaultText = {}) {
    InputBoxRequest r;
    r.prompt = std::move(prompt);
    r.title = std::move(title);
    r.defaultText = std::move(defaultText);
    return r;
}

FileDialogRequest File(std::string title) {
    FileDialogRequest r;
    r.title = std::move(title);
    return r;
}

TEST(MsgBoxStyleTest, DefaultButtonFollowsTheStyle) {
    EXPECT_EQ(MsgBoxDefaultButton(vbOKOnly | vbInformation), vbOK);
    EXPECT_EQ(MsgBoxDefaultButton(vbYesNo | vbQuestion), vbYes);
    EXPECT_EQ(MsgBoxDefaultButton(vbYesNo | vbDefaultButton2), vbNo);
    EXPECT_EQ(MsgBoxDefaultButton(vbYesNoCancel | vbDefaultButton3), vbCancel);
    // A default button the set does not have falls back to the first.
    EXPECT_EQ(MsgBoxDefaultButton(vbOKCancel | vbDefaultButton3), vbOK);
    EXPECT_EQ(MsgBoxButtons(vbAbortRetryIgnore | vbCritical), (std::vector<int>{vbAbort, vbRetry, vbIgnore}));
}

TEST(ScriptedUiHostTest, AnswersInOrderThenAsSomeoneWhoOnlyConfirms) {
    ScriptedUiHost host;
    host.QueueMessageBoxAnswer(vbNo);
    host.QueueInputBoxAnswer("first");
    host.QueueInputBoxAnswer(std::nullopt);
    EXPECT_EQ(host.ShowMessageBox(Msg("Delete?", vbYesNo, "T")), vbNo);
    EXPECT_EQ(host.ShowMessageBox(Msg("Delete?", vbYesNo | vbDefaultButton2, "T")), vbNo);
    EXPECT_EQ(host.ShowInputBox(Ask("Name", "T", "?")), std::optional<std::string>("first"));
    EXPECT_EQ(host.ShowInputBox(Ask("Name", "T", "?")), std::nullopt);
    EXPECT_EQ(host.ShowInputBox(Ask("Name", "T", "?")), std::nullopt);
    EXPECT_EQ(host.ShowOpenDialog(File("Open")), "");
    EXPECT_EQ(host.Unanswered(), 3);
    EXPECT_TRUE(host.AllAnswersUsed());
    ASSERT_EQ(host.Log().size(), 6u);
    EXPECT_EQ(host.Log()[2].kind, ScriptedUiHost::Shown::InputBox);
    EXPECT_EQ(host.Log()[2].defaultText, "?");
}

TEST(ScriptedUiHostTest, ScopeInstallsAndRestores) {
    UiHost* before = &CurrentUiHost();
    {
        ScriptedUiHost host;
        ScopedUiHost scope(host);
        EXPECT_EQ(&CurrentUiHost(), &host);
    }
    EXPECT_EQ(&CurrentUiHost(), before);
    // The headless host cancels prompts and confirms messages.
    EXPECT_EQ(CurrentUiHost().ShowInputBox(Ask("x")), std::nullopt);
    EXPECT_EQ(CurrentUiHost().ShowMessageBox(Msg("x", vbYesNo | vbDefaultButton2)), vbNo);
}

TEST(TerminalUiHostTest, WithoutATerminalGivenAnswersComeFirstThenCancel) {
    std::istringstream in("typed\n");
    std::ostringstream err;
    TerminalUiHost host(in, err, false, {"one", ""});
    EXPECT_EQ(host.ShowInputBox(Ask("Name:", "Zelvo", "?")), std::optional<std::string>("one"));
    EXPECT_EQ(host.ShowInputBox(Ask("Name:", "Zelvo", "?")), std::optional<std::string>(""));
    EXPECT_EQ(host.ShowInputBox(Ask("Name:", "Zelvo", "?")), std::nullopt);  // stdin not read
    EXPECT_NE(err.str().find("cancelled"), std::string::npos);
    EXPECT_EQ(host.ShowMessageBox(Msg("Sure?", vbYesNo | vbDefaultButton2, "Zelvo")), vbNo);
    EXPECT_EQ(host.ShowMessageBox(Msg("Person not found in database!", vbCritical, "Zelvo")), vbOK);
    EXPECT_NE(err.str().find("zelvo error (Zelvo): Person not found in database!"), std::string::npos);
}

TEST(TerminalUiHostTest, OnATerminalEnterKeepsTheDefaultAndEndOfInputCancels) {
    std::istringstream in("\nnew name\nn\nmaybe\ny\n");
    std::ostringstream err;
    TerminalUiHost host(in, err, true);
    EXPECT_EQ(host.ShowInputBox(Ask("Name:", "", "?")), std::optional<std::string>("?"));
    EXPECT_EQ(host.ShowInputBox(Ask("Name:", "", "?")), std::optional<std::string>("new name"));
    EXPECT_EQ(host.ShowMessageBox(Msg("Delete?", vbYesNo)), vbNo);
    // An answer that names no button is asked again.
    EXPECT_EQ(host.ShowMessageBox(Msg("Delete?", vbYesNo)), vbYes);
    EXPECT_EQ(host.ShowInputBox(Ask("Name:", "", "?")), std::nullopt);
    EXPECT_EQ(host.ShowSaveDialog(File("Save")), "");
}

}  // namespace
}  // namespace zelvo::ui
