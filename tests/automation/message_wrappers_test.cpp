#include "hostservices/message_wrappers.h"

#include <gtest/gtest.h>

#include "platform/ui/scripted_host.h"

namespace zelvo {
namespace {

TEST(MessageWrappersTest, AnEmptyTitleShowsTheApplicationsTitle) {
    ui::ScriptedUiHost host;
    ui::ScopedUiHost scope(host);
    host.QueueMessageBoxAnswer(ui::vbNo);
    EXPECT_EQ(UniMsgBox("Delete?", ui::vbYesNo | ui::vbQuestion), ui::vbNo);
    EXPECT_EQ(UniMsgBox("Done", 64, "Mine"), ui::vbOK);
    host.QueueInputBoxAnswer("a@b.c");
    EXPECT_EQ(UniInputBox("E-mail:", "", "?"), "a@b.c");
    ASSERT_EQ(host.Log().size(), 3u);
    EXPECT_EQ(host.Log()[0].title, kApplicationTitle);
    EXPECT_EQ(host.Log()[0].buttons, ui::vbYesNo | ui::vbQuestion);
    EXPECT_EQ(host.Log()[1].title, "Mine");
    EXPECT_EQ(host.Log()[2].title, kApplicationTitle);
    EXPECT_EQ(host.Log()[2].defaultText, "?");
}

TEST(MessageWrappersTest, ACancelledPromptGivesTheEmptyText) {
    ui::ScriptedUiHost host;
    ui::ScopedUiHost scope(host);
    host.QueueInputBoxAnswer(std::nullopt);
    EXPECT_EQ(UniInputBox("Name:", "T", "?"), "");
    EXPECT_TRUE(host.AllAnswersUsed());
}

}  // namespace
}  // namespace zelvo
