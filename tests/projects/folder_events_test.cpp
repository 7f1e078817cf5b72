#include "projects/folder_events.h"

#include <filesystem>
#include <fstream>

#include "projects_book.h"
#include "support/error_number.h"
#include "zelvo/dispatch.h"

namespace zelvo::testing {
namespace {

class FolderEventsTest : public ProjectsBookTest {
protected:
    void SetUp() override {
        ProjectsBookTest::SetUp();
        Add(1, 0, "A");
        Add(2, 1, "a\\B");
        Add(3, 2, "AB");
        Add(4, 4, "X\\A");
        Add(5, 0, "A", true);
    }
};

TEST_F(FolderEventsTest, AMoveReplacesTheLeadingPartOfTheProjectAndItsSubprojectsOnOneSide) {
    book_.rProjectMoved("A", false, "C", false);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1:0:C:L", "2:1:C\\B:L", "3:2:AB:L", "4:4:X\\A:L", "5:0:A:A"}));
}

TEST_F(FolderEventsTest, AMoveToTheOtherSideTakesEverythingBelowAlong) {
    std::string from = "A", to = "Done\\A";
    bool live = false, archive = true;
    book_.FolderMoved(nullptr, from, live, to, archive);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1:0:Done\\A:A", "2:1:Done\\A\\B:A", "3:2:AB:L", "4:4:X\\A:L",
                                                "5:0:A:A"}));
    book_.rProjectMoved("a", true, "", true);  // the archive's own "A"; nothing else there begins with it
    EXPECT_EQ(Rows()[4], "5:0::A");
}

TEST_F(FolderEventsTest, DeletesNeedAShiftAndTheSideOfTheObject) {
    auto before = Rows();
    std::string a = "A";
    book_.FolderDeleted(nullptr, nullptr, nullptr, 1);
    book_.rProjectDeleted("A", false, 0);
    book_.FolderDeleted2(nullptr, nullptr, nullptr, nullptr, a);  // Shift left out
    EXPECT_EQ(Rows(), before);

    book_.InsArcPrj = false;
    book_.FolderDeleted2(nullptr, nullptr, nullptr, nullptr, a, 1);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"3:2:AB:L", "4:4:X\\A:L", "5:0:A:A"}));
    book_.rProjectDeleted("A", true, -1);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"3:2:AB:L", "4:4:X\\A:L"}));
}

TEST_F(FolderEventsTest, ACopyAddsEveryKindOnceAndKeepsTheSource) {
    Add(1, 0, "B");  // the destination already holds person 1
    book_.rProjectCopied("A", "B");
    auto once = Rows();
    EXPECT_EQ(once, (std::vector<std::string>{"1:0:A:L", "1:0:B:L", "2:1:B\\B:L", "2:1:a\\B:L", "3:2:AB:L",
                                              "4:4:X\\A:L", "5:0:A:A"}));
    book_.rProjectCopied("A", "b");  // a second copy, the destination in other case
    EXPECT_EQ(Rows(), once);

    ui::DataControl data;
    std::vector<DispArg> args = {&data, &data, Variant("A"), Variant("Old"), Variant(true), Variant(true)};
    Invoke(book_, "FolderCopy", args);
    EXPECT_EQ(Rows().back(), "5:0:Old:A");
}

TEST_F(FolderEventsTest, AMissingBookEndsEveryEventWithNoEffect) {
    book_.AppPath = (dir_.path() / "elsewhere").string();
    int reports = ShellPaths().ReportCount();
    EXPECT_EQ(ErrorNumberOf([&] {
                  book_.rProjectMoved("A", false, "C", false);
                  book_.rProjectDeleted("A", false, 1);
                  book_.rProjectCopied("A", "C");
              }),
              0);
    EXPECT_EQ(ShellPaths().ReportCount(), reports);
    EXPECT_FALSE(std::filesystem::exists(dir_.path() / "elsewhere" / "AddressBookW.mdb"));
}

// A new path longer than the column: the move raises the engine's error to
// the host, the copy reports it; in both not one row has changed.
TEST_F(FolderEventsTest, APathTooLongForTheColumnChangesNoRow) {
    auto before = Rows();
    std::string longer(254, 'z');
    EXPECT_EQ(ErrorNumberOf([&] { book_.rProjectMoved("A", false, longer, false); }), 3163);
    EXPECT_EQ(Rows(), before);

    int reports = ShellPaths().ReportCount();
    book_.rProjectCopied("A", longer);
    EXPECT_EQ(ShellPaths().ReportCount(), reports + 1);
    EXPECT_EQ(Rows(), before);
}

// Quotes and wildcards in the moved path mean only themselves.
TEST_F(FolderEventsTest, PathsWithQuotesAndWildcardsMoveOnlyTheirOwnRows) {
    Add(6, 0, "Say \"hi\"\\x");
    Add(7, 0, "Say \"hi\"x");
    Add(8, 0, "%\\y");
    book_.rProjectMoved("Say \"hi\"", false, "O'Neil [1]", false);
    book_.rProjectMoved("%", false, "*", false);
    auto rows = Rows();
    EXPECT_NE(std::find(rows.begin(), rows.end(), "6:0:O'Neil [1]\\x:L"), rows.end());
    EXPECT_NE(std::find(rows.begin(), rows.end(), "7:0:Say \"hi\"x:L"), rows.end());
    EXPECT_NE(std::find(rows.begin(), rows.end(), "8:0:*\\y:L"), rows.end());
    EXPECT_NE(std::find(rows.begin(), rows.end(), "1:0:A:L"), rows.end());
}

}  // namespace
}  // namespace zelvo::testing
