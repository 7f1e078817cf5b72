// Navigate's rows of organizations, job titles and employees of a project.
#include "organizations/office_objects.h"

#include "org_book.h"
#include "zelvo/addressbook.h"

namespace zelvo::testing {
namespace {

class OfficeObjectsTest : public OrgBookTest {
protected:
    // A host's list in report view with image keys for every kind and
    // `columns` columns.
    void MakeList(int columns, std::vector<std::string> keys = {"User", "Org", "SubDiv", "JobTitle", "Employee"}) {
        list_ = std::make_unique<ui::ListView>();
        list_->SetView(ui::lvwReport);
        auto images = std::make_shared<ui::ImageList>();
        for (const auto& key : keys) images->ListImages().Add(key, nullptr);
        list_->SetSmallIcons(images);
        for (int i = 0; i < columns; ++i) list_->ColumnHeaders().Add("c" + N(i));
    }
    // "icon:tag:text" of every row.
    std::vector<std::string> Rows() {
        std::vector<std::string> rows;
        for (int i = 1; i <= list_->ListItems().Count(); ++i) {
            const ui::ListItem& item = list_->ListItems().Item(i);
            rows.push_back(item.Icon().AsText() + ":" + item.Tag().AsText() + ":" + item.Text());
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    void Navigate(const std::string& project, std::int32_t flags = AllPersons, std::int32_t flags2 = 31,
                  std::int32_t tagOffset = 0) {
        cAddressbook book;
        book.AppPath = AppPath;
        book.rProject = project;
        book.Flags = flags;
        book.Flags2 = flags2;
        book.tagOffset = tagOffset;
        book.Navigate(list_.get(), nullptr);
    }
    std::unique_ptr<ui::ListView> list_;
};

TEST_F(OfficeObjectsTest, ProjectShowsItsOwnObjectsExactlyOnItsPath) {
    std::int32_t acme = Unit("Acme"), sales = Unit("Sales", acme), deep = Unit("Deep", acme);
    std::int32_t clerk = Job(sales, "Clerk"), gone = Job(sales, "Gone");
    std::int32_t ann = Person("Ann");
    std::int32_t annClerk = Employee(clerk, ann), vacancy = Employee(clerk, 0);
    for (auto [id, type] : std::vector<std::pair<int, int>>{
             {acme, 1}, {sales, 1}, {clerk, 2}, {gone, 2}, {annClerk, 4}, {vacancy, 4}})
        ProjectRow(id, type, "A");
    ProjectRow(deep, 1, "A\\B");
    db_.Execute("Delete From JobTitles Where [Job ID]=" + N(gone));
    Resource("clerk@acme", {{clerk, oJob_ID}}, RsEmail);

    MakeList(6);
    Navigate("A");
    EXPECT_EQ(Rows(), (std::vector<std::string>{"Employee:" + N(annClerk) + ":Ann", "JobTitle:" + N(clerk) + ":Clerk",
                                                "Org:" + N(acme) + ":Acme", "SubDiv:" + N(sales) + ":Sales"}));
    for (int i = 1; i <= list_->ListItems().Count(); ++i) {
        const ui::ListItem& item = list_->ListItems().Item(i);
        if (item.Text() == "Clerk") {
            EXPECT_EQ(item.SubItems(1), " Organization - jobtitle");
            EXPECT_EQ(item.SubItems(2), "clerk@acme");
            EXPECT_EQ(item.SubItemTag(1).AsInteger(), sales);
        }
        if (item.Text() == "Ann") {
            EXPECT_EQ(item.SubItems(1), " Organization - employee");
            EXPECT_EQ(item.SubItemTag(1).AsInteger(), ann);
            EXPECT_EQ(item.SubItemTag(2).AsInteger(), clerk);
            EXPECT_EQ(item.SubItemTag(3).AsInteger(), sales);
        }
    }

    // Without ShowSubDiv the subdivision is left out; the organization stays.
    MakeList(3);
    Navigate("A", AllPersons, ShowOrg);
    EXPECT_EQ(Rows(), std::vector<std::string>{"Org:" + N(acme) + ":Acme"});
}

TEST_F(OfficeObjectsTest, UnsortedListsTopOrganizationsFiledNowhere) {
    std::int32_t filed = Unit("Filed"), archived = Unit("Archived"), loose = Unit("Loose");
    Unit("Sub", loose);
    db_.Execute("Insert Into Organizations (Organization, [Parent ID]) Values (\"NullParent\", Null)");
    ProjectRow(filed, 1, "A");
    ProjectRow(archived, 1, "Old", true);
    MakeList(3);
    Navigate("", NoPrj);
    std::vector<std::string> rows = Rows();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], "Org:" + N(loose) + ":Loose");
    EXPECT_EQ(rows[1].substr(0, 4), "Org:");
}

TEST_F(OfficeObjectsTest, TagOffsetMovesOnlyTheTagsAndMissingImagesAddNothing) {
    std::int32_t acme = Unit("Acme");
    std::int32_t clerk = Job(acme, "Clerk");
    std::int32_t ann = Person("Ann");
    ProjectRow(Employee(clerk, ann), 4, "A");
    MakeList(6);
    Navigate("A", AllPersons, ShowEmployees, 2);
    ASSERT_EQ(list_->ListItems().Count(), 1);
    const ui::ListItem& row = list_->ListItems().Item(1);
    EXPECT_EQ(row.SubItems(1), " Organization - employee");
    EXPECT_EQ(row.SubItemTag(3).AsInteger(), ann);
    EXPECT_EQ(row.SubItemTag(4).AsInteger(), clerk);
    EXPECT_EQ(row.SubItemTag(5).AsInteger(), acme);
    EXPECT_TRUE(row.SubItemTag(1).IsNull());

    MakeList(6, {"User", "Org"});
    Navigate("A", AllPersons, 31);
    EXPECT_EQ(list_->ListItems().Count(), 0);
}

}  // namespace
}  // namespace zelvo::testing
