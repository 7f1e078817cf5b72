#include "zelvo/addressbook.h"

#include <fstream>
#include <sstream>

#include "personslist/persons_book.h"
#include "platform/shell/shell_paths.h"

namespace zelvo::testing {
namespace {

class AddressbookTest : public PersonsBookTest {
protected:
    void SetUp() override {
        PersonsBookTest::SetUp();
        db_.Close();  // the object opens the book itself
        book_.AppPath = dir_.path().string();
        AppPath = "/somewhere/else";  // each entry must copy its own
        previous_ = cAddressbook::SetOfficeObjectsNavigator(
            [this](cAddressbook&, ui::ListView&, const dao::Database& db, std::int32_t type) {
                EXPECT_TRUE(db.IsOpen());
                officeCalls_.push_back(type);
            });
        for (const char* h : {"Name", "Type", "E-mail"}) list_.ColumnHeaders().Add(h);
    }
    void TearDown() override {
        cAddressbook::SetOfficeObjectsNavigator(previous_);
        PersonsBookTest::TearDown();
    }

    std::vector<std::string> Navigate() {
        book_.Navigate(&list_, &dataPersonal_, &dataEmail_);
        std::vector<std::string> rows;
        for (int i = 1; i <= list_.ListItems().Count(); ++i) {
            const ui::ListItem& it = list_.ListItems().Item(i);
            rows.push_back(it.Tag().AsText() + ":" + it.Text() + "|" + it.SubItems(1) + "|" + it.SubItems(2));
        }
        return rows;
    }
    std::string Log() const {
        std::ifstream in(ShellPaths().GetSettingsFolder() + "zelvo.log");
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }

    cAddressbook book_;
    ui::ListView list_;
    ui::DataControl dataPersonal_, dataEmail_;
    std::vector<std::int32_t> officeCalls_;
    cAddressbook::OfficeObjectsNavigator previous_;
};

TEST_F(AddressbookTest, ANewObjectHasItsInitialValues) {
    cAddressbook fresh;
    EXPECT_EQ(fresh.rProject, "");
    EXPECT_FALSE(fresh.InsArcPrj);
    EXPECT_EQ(fresh.Flags, AllPersons);
    EXPECT_EQ(fresh.Flags2, 31);
    EXPECT_EQ(fresh.AppPath, "");
    EXPECT_EQ(fresh.tagOffset, 0);
}

TEST_F(AddressbookTest, NavigateListsTheProjectsMembersWithTheirFirstAddress) {
    book_.rProject = "A\\B";
    EXPECT_EQ(Navigate(), (std::vector<std::string>{"1:Иванов Иван| Man|ivan@example.org"}));
    EXPECT_EQ(AppPath, book_.AppPath);
    EXPECT_EQ(list_.ListItems().Item(1).Icon(), Variant("User"));
    // The data controls are taken and left alone.
    EXPECT_FALSE(dataPersonal_.Recordset().IsOpen());
    EXPECT_EQ(officeCalls_, (std::vector<std::int32_t>{1, 2, 4}));
}

TEST_F(AddressbookTest, NavigateTellsNoSiblingAndNoOtherSide) {
    book_.rProject = "A";
    EXPECT_EQ(Navigate(), (std::vector<std::string>{"1:Иванов Иван| Man|ivan@example.org"}));
    list_.ListItems().Clear();
    book_.rProject = "Old";
    EXPECT_TRUE(Navigate().empty());
    book_.InsArcPrj = true;
    EXPECT_EQ(Navigate(), (std::vector<std::string>{"4:Archive Person| Man|"}));
}

TEST_F(AddressbookTest, FlagsAllPersonsListsTheProjectLikeCurPrj) {
    book_.rProject = "AB";
    book_.Flags = AllPersons;
    auto all = Navigate();
    list_.ListItems().Clear();
    book_.Flags = CurPrj;
    EXPECT_EQ(Navigate(), all);
    EXPECT_EQ(all, (std::vector<std::string>{"2:Smith| Man|smith@example.com"}));
    // A new object's empty project has no members in this book.
    list_.ListItems().Clear();
    book_.rProject.clear();
    EXPECT_TRUE(Navigate().empty());
}

TEST_F(AddressbookTest, NoPrjListsTheUnsortedAndNeverJobsOrEmployees) {
    book_.Flags = NoPrj;
    book_.rProject = "A";
    EXPECT_EQ(Navigate(), (std::vector<std::string>{"3:Nobody No Name| Man|"}));
    EXPECT_EQ(officeCalls_, (std::vector<std::int32_t>{1}));
    officeCalls_.clear();
    book_.Flags2 = ShowJobTitles | ShowEmployees;
    Navigate();
    EXPECT_TRUE(officeCalls_.empty());
}

TEST_F(AddressbookTest, Flags2ChoosesTheKinds) {
    book_.rProject = "A";
    book_.Flags2 = ShowSubDiv | ShowEmployees;
    EXPECT_TRUE(Navigate().empty());
    EXPECT_EQ(officeCalls_, (std::vector<std::int32_t>{1, 4}));
}

TEST_F(AddressbookTest, Flags2ZeroLeavesTheListButStillOpensTheBook) {
    book_.Flags2 = 0;
    list_.ListItems().Add().SetText("host row");
    EXPECT_EQ(Navigate().size(), 1u);
    EXPECT_TRUE(officeCalls_.empty());
    // Without a book the open fails, which shows it is tried.
    int before = ShellPaths().ReportCount();
    TempDir empty;
    book_.AppPath = empty.path().string();
    Navigate();
    EXPECT_EQ(ShellPaths().ReportCount(), before + 1);
    EXPECT_NE(Log().find("zelvo.dll\\cAddressbook\\Navigate"), std::string::npos) << Log();
    EXPECT_NE(Log().find("3024"), std::string::npos);
}

TEST_F(AddressbookTest, NavigateWithoutAListIsReported) {
    int before = ShellPaths().ReportCount();
    book_.rProject = "A";
    book_.Navigate(nullptr, nullptr);
    EXPECT_EQ(ShellPaths().ReportCount(), before + 1);
    EXPECT_NE(Log().find("91"), std::string::npos);
}

TEST_F(AddressbookTest, GetDatabasenameAndCorrectDBFollowTheObjectsAppPath) {
    TempDir other;
    cAddressbook fresh;
    fresh.AppPath = other.path().string();
    std::string expected = (other.path() / "AddressBookW.mdb").string();
    EXPECT_EQ(fresh.GetDatabasename(), expected);
    std::string path;
    fresh.CorrectDB(path);
    EXPECT_EQ(path, expected);
    EXPECT_TRUE(std::filesystem::exists(expected));
    // The corrected book takes a Navigate.
    fresh.Navigate(&list_, nullptr);
    EXPECT_EQ(list_.ListItems().Count(), 0);
}

}  // namespace
}  // namespace zelvo::testing
