// The two project bars on a bare test form, driven as a person drives them.
#include <filesystem>

#include "platform/ui/menu.h"
#include "projects/membership_bar.h"
#include "projects/project_bar.h"
#include "projects/project_rows.h"
#include "projects/project_state.h"
#include "projects_book.h"

namespace zelvo::testing {
namespace {

class ProjectBarTest : public ProjectsBookTest {
protected:
    void SetUp() override {
        ProjectsBookTest::SetUp();
        AppPath = dir_.path().string();
        PrjFilter = AllPersons;
        CurrentPrjPath.clear();
        bar_.Build();
    }
    // "CurPrj NoPrj AllMsg pressed | text | side image | filter | refills"
    std::string State() {
        std::string s;
        for (const char* k : {"CurPrj", "NoPrj", "AllMsg"}) s += std::to_string(tb_.Buttons(k).Value());
        return s + " |" + txt_.Text() + "| " + (bar_.InsArcPrj ? "A " : "L ") +
               tb_.Buttons("Projects").Image().AsText() + " " + std::to_string(PrjFilter) + " " +
               std::to_string(refills_);
    }

    ui::Toolbar tb_;
    ui::TextBox txt_;
    ui::Label label_;
    ui::Menu popup_;
    int refills_ = 0;
    ProjectBar bar_{tb_, txt_, label_, ProjectBarOptions{"frmTest", "AllMsg", "Persons unsorted",
                                                         "Projects\\Archive of completed projects", true},
                    [this] { ++refills_; }, &popup_};
};

TEST_F(ProjectBarTest, TheFilterKeysAreExclusiveAndEachRefills) {
    EXPECT_EQ(label_.Caption(), "Project:");
    EXPECT_EQ(tb_.Buttons("NoPrj").ToolTipText(), "Persons unsorted");
    bar_.rProject = "A\\B";
    tb_.UserClick("CurPrj");
    EXPECT_EQ(State(), "100 |A\\B| L Prj 2 1");
    tb_.UserClick("NoPrj");
    EXPECT_EQ(State(), "010 || L Prj 1 2");
    tb_.UserClick("AllMsg");
    EXPECT_EQ(State(), "001 || L Prj 0 3");
    tb_.UserClick("AllMsg");  // a second click on the pressed key keeps it pressed
    EXPECT_EQ(State(), "001 || L Prj 0 4");
}

TEST_F(ProjectBarTest, BrowsePicksTheProjectOrPutsTheBarBack) {
    host_.QueueProjectPickerAnswer(std::nullopt);
    host_.QueueProjectPickerAnswer("X\\Y");
    tb_.UserClick("Browse");
    EXPECT_EQ(State(), "001 || L Prj 0 0");
    tb_.UserClick("Browse");
    EXPECT_EQ(State(), "100 |X\\Y| L Prj 2 1");
    EXPECT_EQ(txt_.ToolTipText(), "X\\Y");
    EXPECT_EQ(CurrentPrjPath, "X\\Y");
    ASSERT_EQ(host_.PickerLog().size(), 2u);
    EXPECT_EQ(host_.PickerLog()[0].rootFolder, dir_.path().string() + "/");
    EXPECT_EQ(host_.PickerLog()[0].title, "Choosing a component project");
}

TEST_F(ProjectBarTest, TheArchiveSideNeedsItsFolderAndBringsItsTips) {
    bar_.rProject = "A";
    EXPECT_EQ(tb_.Buttons("Projects").ToolTipText(), "Go to Archive of completed projects");
    tb_.UserClick("Projects");
    ASSERT_EQ(host_.Log().size(), 1u);
    EXPECT_EQ(host_.Log()[0].prompt, "Archive of is empty!");
    EXPECT_EQ(host_.Log()[0].buttons, 64);
    EXPECT_EQ(State(), "001 || L Prj 0 0");

    std::filesystem::create_directories(dir_.path() / ".archive");
    tb_.UserClick("Projects");
    EXPECT_EQ(State(), "100 |A| A Archive 2 1");
    EXPECT_EQ(tb_.Buttons("Projects").ToolTipText(), "Go to Projects");
    EXPECT_EQ(popup_.Caption(), "Send to Archive");
    tb_.UserClick("Projects");
    EXPECT_EQ(State(), "100 |A| L Prj 2 2");
}

class MembershipBarTest : public ProjectsBookTest {
protected:
    void SetUp() override {
        ProjectsBookTest::SetUp();
        AppPath = dir_.path().string();
        CurrentPrjPath = "Last";
        Add(1, 0, "A");
        Add(1, 0, "B");
        Add(1, 0, "C", true);
        Add(2, 0, "A");
        db_ = dao::Engine().OpenDatabase(DatabasePath());
        rsPersonal_ = db_.OpenRecordset("Select 1 As [Personal ID]");
        FillLvwProjects(list_, 1, db_, rsProjects_);
    }
    void TearDown() override {
        db_.Close();
        ProjectsBookTest::TearDown();
    }
    std::string ListText() {
        std::string s;
        for (int i = 1; i <= list_.ListItems().Count(); ++i) {
            const ui::ListItem& it = list_.ListItems().Item(i);
            s += it.Text() + "/" + it.Icon().AsText() + (it.Selected() ? "*" : "") + " ";
        }
        return s;
    }
    void Click(const std::string& key) { tbPrj_ButtonClick(key, db_, rsPersonal_, rsProjects_, list_, side_); }

    dao::Database db_;
    dao::Recordset rsPersonal_, rsProjects_;
    ui::ListView list_;
    bool side_ = false;
};

TEST_F(MembershipBarTest, AddFilesThePersonIntoThePickedProject) {
    EXPECT_EQ(ListText(), "A/Prj B/Prj C/Archive ");
    host_.QueueProjectPickerAnswer("New\\One");
    Click("Add");
    EXPECT_EQ(ListText(), "A/Prj B/Prj C/Archive New\\One/Prj ");
    EXPECT_EQ(host_.PickerLog()[0].path, "Last");
    EXPECT_EQ(host_.PickerLog()[0].title, "Seleting of Component project");
    EXPECT_EQ(CurrentPrjPath, "New\\One");
    EXPECT_EQ(PrjFilter, CurPrj);
    Click("Add");  // cancelled: nothing
    EXPECT_EQ(Rows().size(), 5u);
}

TEST_F(MembershipBarTest, DelTakesTheSelectedRowsOfThePersonOnly) {
    list_.ListItems().Item(1).SetSelected(true);
    list_.ListItems().Item(3).SetSelected(true);
    Click("Del");
    EXPECT_EQ(ListText(), "B/Prj ");
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1:0:B:L", "2:0:A:L"}));
}

TEST_F(MembershipBarTest, InsArcPrjSendsTheSelectedRowAcrossAndKeepsItSelected) {
    list_.ListItems().Item(2).SetSelected(true);
    Click("InsArcPrj");
    EXPECT_EQ(ListText(), "A/Prj B/Archive* C/Archive ");
    EXPECT_TRUE(side_);
    EXPECT_TRUE(std::filesystem::is_directory(dir_.path() / ".archive" / "B"));
    Click("InsArcPrj");
    EXPECT_EQ(ListText(), "A/Prj B/Prj* C/Archive ");
    EXPECT_FALSE(side_);
}

}  // namespace
}  // namespace zelvo::testing
