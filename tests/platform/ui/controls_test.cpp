#include <gtest/gtest.h>

#include "platform/ui/form.h"
#include "platform/ui/scripted_host.h"
#include "support/control_text.h"
#include "support/error_number.h"

namespace zelvo::ui {
namespace {

using testing::ErrorNumberOf;
using testing::Pressed;

TEST(ToolbarTest, APersonsClickTogglesCheckAndPressesOneOfAGroupRun) {
    Toolbar tb;
    std::vector<std::string> clicked;
    tb.OnButtonClick = [&](Button& b) { clicked.push_back(b.Key() + "=" + std::to_string(b.Value())); };
    tb.Add("All", "", tbrButtonGroup);
    tb.Add("None", "", tbrButtonGroup);
    tb.Add("sep", "", tbrSeparator);
    tb.Add("Other", "", tbrButtonGroup);  // a group of its own: the separator ends the first run
    tb.Add("Photo", "", tbrCheck);
    tb.Add("Exit");

    tb.Buttons("Other").SetValue(tbrPressed);
    EXPECT_TRUE(tb.UserClick("All"));
    EXPECT_TRUE(tb.UserClick("None"));
    EXPECT_EQ(Pressed(tb), "None,Other");

    EXPECT_TRUE(tb.UserClick("Photo"));
    EXPECT_TRUE(tb.UserClick("Photo"));
    EXPECT_TRUE(tb.UserClick("Exit"));
    EXPECT_EQ(Pressed(tb), "None,Other");
    EXPECT_EQ(clicked, (std::vector<std::string>{"All=1", "None=1", "Photo=1", "Photo=0", "Exit=0"}));
}

TEST(ToolbarTest, WhatAPersonCannotReachIsNotClicked) {
    Toolbar tb;
    int clicks = 0;
    tb.OnButtonClick = [&](Button&) { ++clicks; };
    tb.Add("A", "", tbrCheck);
    tb.Add("B");
    tb.Add("-", "", tbrSeparator);
    tb.Buttons("A").SetEnabled(false);
    tb.Buttons("B").SetVisible(false);
    EXPECT_FALSE(tb.UserClick("A"));
    EXPECT_FALSE(tb.UserClick("B"));
    EXPECT_FALSE(tb.UserClick("-"));
    EXPECT_EQ(tb.Buttons("A").Value(), tbrUnpressed);

    tb.Buttons("B").SetVisible(true);
    tb.SetEnabled(false);
    EXPECT_FALSE(tb.UserClick("B"));
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(ErrorNumberOf([&] { tb.UserClick("Nope"); }), kElementNotFound);
}

TEST(ToolbarTest, KeysAreUniqueAndButtonsCountFromOne) {
    Toolbar tb;
    tb.Add("A", "First");
    tb.Add();  // keyless buttons may repeat
    tb.Add();
    EXPECT_EQ(ErrorNumberOf([&] { tb.Add("A"); }), kKeyNotUnique);
    EXPECT_EQ(tb.Buttons(1).Caption(), "First");
    EXPECT_EQ(tb.Buttons("A").Index(), 1);
    EXPECT_EQ(ErrorNumberOf([&] { tb.Buttons(0); }), kIndexOutOfBounds);
    EXPECT_EQ(ErrorNumberOf([&] { tb.Buttons(4); }), kIndexOutOfBounds);
    EXPECT_FALSE(tb.Exists(""));
}

TEST(ToolbarTest, ObserversHearAButtonsChangeOnlyWhenItChanges) {
    Toolbar tb;
    Button& b = tb.Add("A");
    int told = 0;
    tb.Observe([&] { ++told; });
    b.SetToolTipText("tip");
    b.SetToolTipText("tip");
    b.SetValue(5);  // any non-zero value presses
    b.SetValue(1);
    b.SetImage(Variant(std::string("OpenFold")));
    EXPECT_EQ(told, 3);
    EXPECT_EQ(b.Value(), tbrPressed);
}

TEST(SimpleControlsTest, ChangeEventsFollowEveryTextChangeAndLockingStopsTyping) {
    TextBox box;
    std::vector<std::string> seen;
    box.OnChange = [&] { seen.push_back(box.Text()); };
    box.SetText("code");
    box.SetText("code");  // unchanged: no event
    EXPECT_TRUE(box.UserType("typed"));
    box.SetLocked(true);
    EXPECT_FALSE(box.UserType("refused"));
    box.SetLocked(false);
    box.SetEnabled(false);
    EXPECT_FALSE(box.UserType("refused"));
    EXPECT_EQ(seen, (std::vector<std::string>{"code", "typed"}));

    CommandButton cmd;
    int clicks = 0;
    cmd.OnClick = [&] { ++clicks; };
    EXPECT_TRUE(cmd.UserClick());
    cmd.SetVisible(false);
    EXPECT_FALSE(cmd.UserClick());
    EXPECT_EQ(clicks, 1);
}

TEST(ComboBoxTest, TheChosenEntryStaysChosenAsTheListChanges) {
    ComboBox cb;
    int clicks = 0;
    cb.OnClick = [&] { ++clicks; };
    cb.AddItem("b");
    cb.AddItem("c");
    cb.SetListIndex(1);
    EXPECT_EQ(cb.Text(), "c");
    cb.AddItem("a", 0);
    EXPECT_EQ(cb.ListIndex(), 2);
    EXPECT_EQ(cb.List(cb.ListIndex()), "c");
    cb.RemoveItem(0);
    EXPECT_EQ(cb.ListIndex(), 1);
    cb.RemoveItem(1);
    EXPECT_EQ(cb.ListIndex(), -1);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(ErrorNumberOf([&] { cb.SetListIndex(1); }), kIndexOutOfBounds);
    EXPECT_EQ(ErrorNumberOf([&] { cb.AddItem("x", 5); }), kIndexOutOfBounds);

    cb.Style = vbComboDropdownList;
    EXPECT_FALSE(cb.UserType("typed"));
    EXPECT_TRUE(cb.UserSelect(0));
    EXPECT_EQ(cb.Text(), "b");
}

TEST(TabStripTest, ClickTellsThePageThatWasInFront) {
    TabStrip tabs;
    tabs.AddTab("T0", "Main");
    tabs.AddTab("T1", "Internet");
    tabs.AddTab("T2", "Projects");
    std::vector<int> previous;
    tabs.OnClick = [&](int p) { previous.push_back(p); };
    EXPECT_TRUE(tabs.UserSelect(2));
    tabs.SetTab(2);  // already in front: no event
    tabs.SetTabEnabled(1, false);
    EXPECT_FALSE(tabs.UserSelect(1));
    tabs.SetTab(0);
    EXPECT_EQ(previous, (std::vector<int>{0, 2}));
    EXPECT_EQ(ErrorNumberOf([&] { tabs.SetTab(3); }), kIndexOutOfBounds);

    StatusBar bar;
    bar.AddPanel("one");
    EXPECT_EQ(bar.PanelText(1), "one");
    EXPECT_EQ(ErrorNumberOf([&] { bar.SetPanelText(2, "x"); }), kIndexOutOfBounds);
}

TEST(MenuTest, ASubItemsChangeReachesTheTopAndOnlyLeavesAreChosen) {
    Menu popup("mnuPopup");
    Menu& view = popup.Add("mnuView", "View");
    Menu& photo = view.Add("ViewPhoto", "Photos");
    view.Add("sep", "-");
    int told = 0;
    popup.Observe([&] { ++told; });
    photo.SetChecked(true);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(popup.Find("ViewPhoto"), &photo);
    EXPECT_EQ(popup.Find("nothing"), nullptr);

    int clicks = 0;
    photo.OnClick = [&] { ++clicks; };
    view.OnClick = [&] { ++clicks; };
    EXPECT_TRUE(photo.UserClick());
    EXPECT_FALSE(view.UserClick());
    EXPECT_FALSE(view.Item(2).UserClick());
    EXPECT_EQ(clicks, 1);
}

class CountingForm : public Form {
public:
    CountingForm() : Form("frmTest") {}
    int unloads = 0;

protected:
    void QueryUnload() override { ++unloads; }
};

TEST(FormTest, UnloadRunsOnceAndAnUnloadedWindowStaysHidden) {
    CountingForm form;
    form.Show();
    form.Hide();
    EXPECT_FALSE(form.Visible());
    EXPECT_EQ(form.unloads, 0);
    form.Show();
    form.Unload();
    form.Unload();
    EXPECT_EQ(form.unloads, 1);
    EXPECT_FALSE(form.Visible());
    form.Show();
    EXPECT_FALSE(form.Visible());
}

TEST(FormTest, PropertiesAndControlsByName) {
    Form form("frmTest");
    int told = 0;
    form.Observe([&] { ++told; });
    form.SetProp("Space ID", 7);
    form.SetProp("Space ID", 7);
    EXPECT_EQ(form.GetProp("Space ID"), 7);
    form.RemoveProp("Space ID");
    form.RemoveProp("Space ID");
    EXPECT_EQ(form.GetProp("Space ID"), std::nullopt);
    EXPECT_EQ(told, 2);

    TextBox a, b;
    Toolbar tb;
    form.AddControl("txt", &a);
    form.AddControl("tb", &tb);
    form.AddControl("txt", &b);  // the same name again replaces, keeping its place
    ASSERT_EQ(form.Controls().size(), 2u);
    EXPECT_EQ(form.Controls()[0].first, "txt");
    EXPECT_EQ(std::get<TextBox*>(*form.FindControl("txt")), &b);
    EXPECT_FALSE(form.FindControl("missing"));
}

TEST(ListViewEventsTest, APersonsSelectionKeepsOnlyTheRowsChosenAndClicksTheFirst) {
    ListView lv;
    for (const char* t : {"a", "b", "c"}) lv.ListItems().Add().SetText(t);
    lv.ListItems().Item(1).SetSelected(true);
    std::vector<std::string> events;
    lv.OnItemClick = [&](ListItem& item) { events.push_back("click " + item.Text()); };
    lv.OnDblClick = [&] { events.push_back("dbl"); };

    EXPECT_TRUE(lv.UserSelect({3, 2}));
    EXPECT_FALSE(lv.ListItems().Item(1).Selected());
    EXPECT_TRUE(lv.ListItems().Item(2).Selected());
    EXPECT_TRUE(lv.UserDblClick(1));
    EXPECT_FALSE(lv.ListItems().Item(3).Selected());
    EXPECT_EQ(events, (std::vector<std::string>{"click c", "click a", "dbl"}));

    EXPECT_EQ(ErrorNumberOf([&] { lv.UserSelect({4}); }), kIndexOutOfBounds);
    EXPECT_TRUE(lv.ListItems().Item(1).Selected());  // a bad index changes nothing
    lv.SetEnabled(false);
    EXPECT_FALSE(lv.UserSelect({2}));
    EXPECT_EQ(events.size(), 3u);
}

TEST(RunWindowTest, TheWaitEndsWhenTheWindowIsHiddenOrClosedByItsFrame) {
    CountingForm hiddenByCode, leftOpen, unattended;
    ScriptedUiHost host;
    host.QueueWindowAction([](Form& f) {
        EXPECT_TRUE(f.Visible());
        f.Hide();  // an OK button: the window stays loaded for its caller
    });
    host.QueueWindowAction([](Form&) {});
    host.RunWindow(hiddenByCode);
    host.RunWindow(leftOpen);
    host.RunWindow(unattended);
    EXPECT_EQ(hiddenByCode.unloads, 0);
    EXPECT_FALSE(hiddenByCode.Unloaded());
    EXPECT_EQ(leftOpen.unloads, 1);
    EXPECT_EQ(unattended.unloads, 1);
    EXPECT_EQ(host.Unanswered(), 1);
    ASSERT_EQ(host.Log().size(), 3u);
    EXPECT_EQ(host.Log()[0].kind, ScriptedUiHost::Shown::Window);
    EXPECT_EQ(host.Log()[0].prompt, "frmTest");

    // A host with nobody to work in a window closes it at once.
    CountingForm headless;
    CurrentUiHost().RunWindow(headless);
    EXPECT_EQ(headless.unloads, 1);
}

}  // namespace
}  // namespace zelvo::ui
