// The fills of the resource lists: record order, tags, icons, texts.
#include "resources/resource_lists.h"

#include "personslist/persons_book.h"
#include "resources/resource_queries.h"

namespace zelvo::testing {
namespace {

class ResourceListsTest : public PersonsBookTest {
protected:
    static std::vector<std::string> Rows(const ui::ListView& lv) {
        std::vector<std::string> rows;
        for (int i = 1; i <= lv.ListItems().Count(); ++i) {
            const ui::ListItem& it = lv.ListItems().Item(i);
            std::string r = it.Tag().AsText() + ":" + it.Text() + ":" + it.Icon().AsText();
            for (const auto& s : it.SubItemsRaw()) r += "|" + s;
            rows.push_back(r);
        }
        return rows;
    }
};

TEST_F(ResourceListsTest, ListRowIsRecordPositionPlusOne) {
    dao::Recordset rs = db_.OpenRecordset(SqlEmails(1, oPersonal_ID));
    ui::ListView lv;
    lv.ListItems().Add().SetText("stale");
    FillLvwEmails(rs, lv);
    EXPECT_EQ(Rows(lv), (std::vector<std::string>{"1:ivan@example.org:Email", "2:ivanov@work.example:Email"}));
    rs.SetAbsolutePosition(1);
    EXPECT_EQ(ValueConv::ToLong(rs("Resource ID")), ValueConv::ToLong(lv.ListItems().Item(2).Tag()));
}

TEST_F(ResourceListsTest, PhonesTakeThePhoneIconAndTypeColumnAndAnEmptySetClears) {
    db_.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"node@mail\", 2)");
    db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (5, 9, 8)");
    ui::ListView lv;
    lv.ColumnHeaders().Add("Number");
    lv.ColumnHeaders().Add("Type");
    dao::Recordset rs = db_.OpenRecordset(SqlHomePhones(1, 9));
    FilllvwPhones(rs, lv);
    EXPECT_EQ(Rows(lv), (std::vector<std::string>{"4:+7 495 123-45-67:Phone|Phone", "5:node@mail:Phone|Phone"}));

    dao::Recordset none = db_.OpenRecordset(SqlHomePhones(3, 0));
    FilllvwPhones(none, lv);
    EXPECT_EQ(lv.ListItems().Count(), 0);
}

TEST_F(ResourceListsTest, WebListTrimsAndNamesAnEmptyAddress) {
    db_.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"  example.org  \", 1)");
    db_.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"   \", 1)");
    db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (5, 3, 0)");
    db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (6, 3, 0)");
    dao::Recordset rs = db_.OpenRecordset(SqlPersonWebs(3));
    ui::ListView lv;
    NavigateWebList(rs, lv);
    EXPECT_EQ(Rows(lv), (std::vector<std::string>{"5:example.org:IE", "6:<No address given>:IE"}));
}

TEST_F(ResourceListsTest, IconsByKind) {
    EXPECT_EQ(ResourceIcon(rsPhone), "Phone");
    EXPECT_EQ(ResourceIcon(rsWebPage), "IE");
    EXPECT_EQ(ResourceIcon(RsEmail), "Email");
    EXPECT_EQ(ResourceIcon(rsICQ), "ICQ");
    EXPECT_EQ(ResourceIcon(3), "");
}

}  // namespace
}  // namespace zelvo::testing
