#include "platform/ui/listview.h"

#include <gtest/gtest.h>

#include "support/error_number.h"

namespace zelvo::ui {
namespace {

using testing::ErrorNumberOf;

std::string Texts(const ListView& lv) {
    std::string s;
    for (int i = 1; i <= lv.ListItems().Count(); ++i) s += (i > 1 ? "," : "") + lv.ListItems().Item(i).Text();
    return s;
}

TEST(ListViewTest, SubItemsExistOnlyForColumnsBeyondTheFirst) {
    ListView one;
    one.ColumnHeaders().Add("Name");
    ListItem& a = one.ListItems().Add();
    EXPECT_EQ(ErrorNumberOf([&] { a.SetSubItems(1, "x"); }), kIndexOutOfBounds);

    ListView none;
    ListItem& b = none.ListItems().Add();
    EXPECT_EQ(ErrorNumberOf([&] { b.SetSubItems(1, "x"); }), kIndexOutOfBounds);

    ListView three;
    for (const char* h : {"Name", "Type", "E-mail"}) three.ColumnHeaders().Add(h);
    ListItem& c = three.ListItems().Add();
    c.SetSubItems(2, "mail@example.org");
    EXPECT_EQ(c.SubItems(1), "");  // never set reads as empty
    EXPECT_EQ(c.SubItems(2), "mail@example.org");
    EXPECT_EQ(ErrorNumberOf([&] { c.SetSubItems(3, "x"); }), kIndexOutOfBounds);
    EXPECT_EQ(ErrorNumberOf([&] { (void)c.SubItems(0); }), kIndexOutOfBounds);
}

TEST(ListViewTest, RowsCountFromOneAndInsertBeforeAnIndex) {
    ListView lv;
    lv.ListItems().Add().SetText("b");
    lv.ListItems().Add(1, "k", "a");
    lv.ListItems().Add().SetText("c");
    EXPECT_EQ(Texts(lv), "a,b,c");
    EXPECT_EQ(lv.ListItems().Item(3).Index(), 3);
    EXPECT_EQ(lv.ListItems().Item("k").Text(), "a");
    EXPECT_EQ(ErrorNumberOf([&] { lv.ListItems().Item(0); }), kIndexOutOfBounds);
    EXPECT_EQ(ErrorNumberOf([&] { lv.ListItems().Item(4); }), kIndexOutOfBounds);
    EXPECT_EQ(ErrorNumberOf([&] { lv.ListItems().Add(2, "k"); }), kKeyNotUnique);
    EXPECT_EQ(ErrorNumberOf([&] { lv.ListItems().Item("nope"); }), kElementNotFound);
    lv.ListItems().Remove(2);
    EXPECT_EQ(Texts(lv), "a,c");
    lv.ListItems().Clear();
    EXPECT_EQ(lv.ListItems().Count(), 0);
}

TEST(ListViewTest, ObserversHearNothingWhileRedrawIsOffThenOneRedraw) {
    ListView lv;
    std::vector<ListViewChange::Kind> heard;
    int id = lv.Observe([&](const ListViewChange& c) { heard.push_back(c.kind); });

    lv.ListItems().Add().SetText("x");
    EXPECT_EQ(heard, (std::vector{ListViewChange::Items, ListViewChange::Item}));
    heard.clear();

    lv.SetAllowRedraw(false);
    for (int i = 0; i < 100; ++i) lv.ListItems().Add().SetText("row");
    EXPECT_TRUE(heard.empty());
    lv.SetAllowRedraw(true);
    EXPECT_EQ(heard, std::vector{ListViewChange::Redraw});

    // Turning redraw off and on with no change in between tells nothing.
    heard.clear();
    lv.SetAllowRedraw(false);
    lv.SetAllowRedraw(true);
    EXPECT_TRUE(heard.empty());

    lv.Unobserve(id);
    lv.ListItems().Add();
    EXPECT_TRUE(heard.empty());
}

TEST(ListViewTest, ItemChangesNameTheRow) {
    ListView lv;
    lv.ColumnHeaders().Add("a");
    lv.ColumnHeaders().Add("b");
    lv.ListItems().Add();
    ListItem& second = lv.ListItems().Add();
    std::vector<int> rows;
    lv.Observe([&](const ListViewChange& c) {
        if (c.kind == ListViewChange::Item) rows.push_back(c.index);
    });
    second.SetTag(Variant(7));
    second.SetSubItems(1, "x");
    lv.ListItems().Item(1).SetIcon(Variant("User"));
    EXPECT_EQ(rows, (std::vector{2, 2, 1}));
}

TEST(ListViewTest, ImagesAreFoundByKeyAndKeysAreUnique) {
    auto images = std::make_shared<ImageList>();
    auto& list = images->ListImages();
    list.Add("User", nullptr);
    auto photo = std::make_shared<imaging::Picture>();
    photo->Width = 3;
    list.Add("ID_7", photo);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Item("ID_7").Picture->Width, 3);
    EXPECT_EQ(list.Item(1).Key, "User");
    EXPECT_EQ(ErrorNumberOf([&] { list.Add("User", nullptr); }), kKeyNotUnique);
    EXPECT_EQ(ErrorNumberOf([&] { list.Item("ID_8"); }), kElementNotFound);
    EXPECT_EQ(ErrorNumberOf([&] { list.Remove(3); }), kIndexOutOfBounds);
    list.Remove("User");
    EXPECT_EQ(list.Item(1).Key, "ID_7");
    EXPECT_FALSE(list.Exists("User"));

    ListView lv;
    lv.SetIcons(images);
    lv.SetSmallIcons(images);
    EXPECT_EQ(lv.Icons().get(), images.get());
    lv.SetIcons(nullptr);
    EXPECT_EQ(lv.Icons(), nullptr);
}

TEST(ListViewTest, SortIgnoresCaseAndCanUseASubItemOrGoDown) {
    ListView lv;
    lv.ColumnHeaders().Add("Name");
    lv.ColumnHeaders().Add("Mail");
    const char* rows[][2] = {{"иванов", "c"}, {"Smith", "a"}, {"ИВАНОВА", "b"}, {"adams", ""}};
    for (auto& r : rows) {
        ListItem& it = lv.ListItems().Add();
        it.SetText(r[0]);
        if (*r[1]) it.SetSubItems(1, r[1]);
    }
    lv.SetSorted(true);
    EXPECT_EQ(Texts(lv), "adams,Smith,иванов,ИВАНОВА");
    lv.SetSortOrder(lvwDescending);
    lv.Sort();
    EXPECT_EQ(Texts(lv), "ИВАНОВА,иванов,Smith,adams");
    lv.SetSortKey(1);
    lv.SetSortOrder(lvwAscending);
    lv.Sort();
    EXPECT_EQ(Texts(lv), "adams,Smith,ИВАНОВА,иванов");
}

}  // namespace
}  // namespace zelvo::ui
