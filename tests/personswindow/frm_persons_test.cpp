#include "personswindow/frm_persons.h"

#include <filesystem>

#include "platform/ui/scripted_host.h"
#include "support/control_text.h"
#include "window_fixture.h"
#include "zelvo/addressbook.h"

namespace zelvo::testing {
namespace {

class FrmPersonsTest : public PersonsWindowTest {
protected:
    ui::ScriptedUiHost host_;
    ui::ScopedUiHost scope_{host_};
};

TEST_F(FrmPersonsTest, TheFilterKeysRefillTheListAndTheBarShowsTheFilter) {
    frmPersons form;
    form.PrjFilter = NoPrj;
    form.Navigate();
    EXPECT_EQ(form.LvwUser.ListItems().Count(), 1);  // person 3, who has no name
    EXPECT_EQ(form.Personal_ID(), 3);

    form.tbPrj.UserClick("AllPersons");
    EXPECT_EQ(form.PrjFilter, AllPersons);
    EXPECT_EQ(RowTexts(form.LvwUser), "Smith,Иванов Иван");  // sorted by name
    EXPECT_EQ(Pressed(form.tbPrj), "AllPersons");
    EXPECT_EQ(form.txtPrj.Text(), "");

    // The side changes, the filter stays: all persons of the archive.
    form.tbPrj.UserClick("Projects");
    EXPECT_EQ(form.PrjFilter, AllPersons);
    EXPECT_TRUE(form.InsArcPrj);
    EXPECT_EQ(RowTexts(form.LvwUser), "Archive Person");
    EXPECT_EQ(form.tbPrj.Buttons("Projects").Image(), Variant("Archive"));
    EXPECT_EQ(form.tbPrj.Buttons("Projects").ToolTipText(), "Go to Projects");

    form.tbPrj.UserClick("Projects");
    form.rProject = "A";
    form.tbPrj.UserClick("CurPrj");
    EXPECT_EQ(RowTexts(form.LvwUser), "Иванов Иван");
    EXPECT_EQ(form.txtPrj.Text(), "A");
    EXPECT_EQ(Pressed(form.tbPrj), "CurPrj");
    EXPECT_EQ(form.tbPrj.Buttons("Projects").ToolTipText(), "Go to Archive of completed projects");

    form.tbPrj.UserClick("NoPrj");
    EXPECT_EQ(form.txtPrj.Text(), "");
    EXPECT_EQ(Pressed(form.tbPrj), "NoPrj");
}

TEST_F(FrmPersonsTest, BrowseTakesThePickedProjectAndACancelChangesNothing) {
    frmPersons form;
    form.PrjFilter = NoPrj;
    form.Navigate();
    form.Restore_tbPrj();
    host_.QueueProjectPickerAnswer(std::nullopt);
    form.tbPrj.UserClick("Browse");
    EXPECT_EQ(form.PrjFilter, NoPrj);
    EXPECT_EQ(Pressed(form.tbPrj), "NoPrj");

    host_.QueueProjectPickerAnswer("A\\B");
    form.tbPrj.UserClick("Browse");
    EXPECT_EQ(form.PrjFilter, CurPrj);
    EXPECT_EQ(form.rProject, "A\\B");
    EXPECT_EQ(form.txtPrj.Text(), "A\\B");
    EXPECT_EQ(RowTexts(form.LvwUser), "Иванов Иван");
    EXPECT_EQ(Pressed(form.tbPrj), "CurPrj");
    ASSERT_EQ(host_.PickerLog().size(), 2u);
    EXPECT_EQ(host_.PickerLog()[1].rootFolder, ShellPaths().GetDataFolder());
}

TEST_F(FrmPersonsTest, WithNoArchiveFolderTheSideStaysAndThePersonIsTold) {
    std::filesystem::remove_all(ShellPaths().GetArchiveFolder());
    frmPersons form;
    form.PrjFilter = AllPersons;
    form.Navigate();
    form.tbPrj.UserClick("Projects");
    EXPECT_FALSE(form.InsArcPrj);
    ASSERT_EQ(host_.Log().size(), 1u);
    EXPECT_EQ(host_.Log()[0].prompt, "Archive of is empty!");
}

TEST_F(FrmPersonsTest, CommandsThatNeedAPersonFollowWhetherTheListHasRows) {
    frmPersons form;
    auto enabled = [&] {
        std::string s;
        for (const char* k : {"Export", "Prop", "Del", "mPack"}) s += form.Toolbar1.Buttons(k).Enabled() ? '1' : '0';
        for (const char* k : {"Add", "Del", "PrjArcPrj"}) s += form.TbPrjProp.Buttons(k).Enabled() ? '1' : '0';
        s += form.cmdPersProp.Enabled() ? '1' : '0';
        return s;
    };
    form.PrjFilter = CurPrj;
    form.rProject = "No such project";
    form.Navigate();
    EXPECT_EQ(form.LvwUser.ListItems().Count(), 0);
    EXPECT_EQ(form.Personal_ID(), 0);
    EXPECT_EQ(enabled(), "00000000");

    form.rProject = "AB";
    form.Navigate();
    EXPECT_EQ(form.Personal_ID(), 2);
    EXPECT_EQ(enabled(), "11111111");
    EXPECT_TRUE(form.Toolbar1.Buttons("New").Enabled());  // needs no row, never disabled
}

TEST_F(FrmPersonsTest, CurrentProjectWithNoPathTakesTheShellsCurrentFolderAndItsSide) {
    ShellPaths().SetCurrentFolder(ShellPaths().GetArchiveFolder() + "Old");
    frmPersons form;
    form.PrjFilter = CurPrj;
    form.Navigate();
    EXPECT_TRUE(form.InsArcPrj);
    EXPECT_EQ(form.rProject, "Old");
    EXPECT_EQ(form.txtPrj.Text(), "Old");
    EXPECT_EQ(RowTexts(form.LvwUser), "Archive Person");

    ShellPaths().SetCurrentFolder(ShellPaths().GetDataFolder() + "A/B/");
    frmPersons live;
    live.PrjFilter = CurPrj;
    live.Navigate();
    EXPECT_FALSE(live.InsArcPrj);
    EXPECT_EQ(live.rProject, "A\\B");
    EXPECT_EQ(RowTexts(live.LvwUser), "Иванов Иван");
}

TEST_F(FrmPersonsTest, ASpaceSwapsTheDialogButtonsForExitAndLivesInTheWindowProperty) {
    frmPersons form;
    EXPECT_TRUE(form.cmdOK.Visible());
    EXPECT_TRUE(form.cmdCancel.Visible());
    EXPECT_FALSE(form.Toolbar1.Buttons("Exit").Visible());
    EXPECT_FALSE(form.GetProp("Space ID"));

    form.SetSpaceID(12);
    EXPECT_EQ(form.GetProp("Space ID"), 12);
    EXPECT_FALSE(form.cmdOK.Visible());
    EXPECT_TRUE(form.Toolbar1.Buttons("Exit").Visible());

    form.Unload();
    EXPECT_FALSE(form.GetProp("Space ID"));
    EXPECT_FALSE(form.DatabaseOpen());
}

TEST_F(FrmPersonsTest, PickPersonGivesThePersonOnlyWhenTheWindowEndsWithOK) {
    host_.QueueWindowAction([](ui::Form& f) {
        auto& form = static_cast<frmPersons&>(f);
        EXPECT_EQ(RowTexts(form.LvwUser), "Иванов Иван");  // started on the project given
        form.cmdOK.UserClick();
    });
    EXPECT_EQ(PickPerson("A\\B", false, 0, 0, false), 1);

    host_.QueueWindowAction([](ui::Form& f) {
        auto& form = static_cast<frmPersons&>(f);
        EXPECT_EQ(form.PrjFilter, AllPersons);
        form.LvwUser.UserSelect({2});
        form.cmdCancel.UserClick();
    });
    EXPECT_EQ(PickPerson("", false, 0, 0, true), 0);

    // Closed by the frame: Cancel stays True.
    host_.QueueWindowAction([](ui::Form& f) { f.Unload(); });
    EXPECT_EQ(PickPerson("AB", false, 0, 0, false), 0);

    // Exit, in a space, hides the window with Cancel still True.
    host_.QueueWindowAction([](ui::Form& f) {
        static_cast<frmPersons&>(f).Toolbar1.UserClick("Exit");
        EXPECT_FALSE(f.Visible());
        EXPECT_FALSE(f.Unloaded());
    });
    EXPECT_EQ(PickPerson("AB", false, 0, 5, false), 0);
    EXPECT_TRUE(host_.AllAnswersUsed());
}

TEST_F(FrmPersonsTest, ShowAddressBookAndSpaceNavigateOpenTheWindowOnTheObjectsView) {
    cAddressbook book;
    book.AppPath = AppPath;
    std::vector<std::string> seen;
    auto look = [&](ui::Form& f) {
        auto& form = static_cast<frmPersons&>(f);
        seen.push_back(RowTexts(form.LvwUser) + " space " + std::to_string(form.SpaceID()));
    };
    host_.QueueWindowAction(look);
    book.ShowAddressBook();  // no project: the unsorted
    host_.QueueWindowAction(look);
    book.rProject = "AB";
    book.SpaceNavigate(9, 3);
    book.SpaceNavigate(9, 7);  // no window for that number
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0], "Nobody No Name space 0");
    EXPECT_EQ(seen[1], "Smith space 9");
}

TEST_F(FrmPersonsTest, ABookThatWillNotOpenGivesAnEmptyWindowAndOneReport) {
    db_.Close();
    std::filesystem::remove(DatabasePath());
    std::filesystem::create_directory(DatabasePath());  // a folder where the book should be
    int reports = ShellPaths().ReportCount();
    host_.QueueWindowAction([](ui::Form& f) {
        auto& form = static_cast<frmPersons&>(f);
        EXPECT_EQ(form.LvwUser.ListItems().Count(), 0);
        EXPECT_FALSE(form.StatusBar1.SimpleText().empty());
        form.tbPrj.UserClick("AllPersons");
        form.tbPrj.UserClick("Projects");
        EXPECT_EQ(form.LvwUser.ListItems().Count(), 0);
    });
    EXPECT_EQ(PickPerson("", false, 0, 0, false), 0);
    EXPECT_EQ(ShellPaths().ReportCount(), reports + 1);
}

}  // namespace
}  // namespace zelvo::testing
