#include "projects/addr_dlg.h"

#include <filesystem>

#include "personslist/persons_book.h"
#include "platform/ui/scripted_host.h"
#include "projects/project_state.h"
#include "support/control_text.h"

namespace zelvo::testing {
namespace {

class AddrDLGTest : public PersonsBookTest {
protected:
    void SetUp() override {
        PersonsBookTest::SetUp();
        ShellPaths().SetCurrentFolder({});
        savedFilter_ = PrjFilter;
        std::filesystem::create_directories(ShellPaths().GetArchiveFolder() + "Old");
        std::filesystem::create_directories(ShellPaths().GetDataFolder() + "A");
        book_ = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access");
        dlg_.Database = book_;
    }
    void TearDown() override {
        for (dao::Recordset* rs : {&dlg_.RsPersonal, &dlg_.DataPersonalFull, &dlg_.DataProjects})
            if (rs->IsOpen()) rs->Close();
        book_.Close();
        PrjFilter = savedFilter_;
        ShellPaths().SetCurrentFolder({});
        PersonsBookTest::TearDown();
    }
    int Current(dao::Recordset& rs) { return ValueConv::ToLong(rs("Personal ID")); }

    ui::ScriptedUiHost host_;
    ui::ScopedUiHost scope_{host_};
    ui::ListView LvwUser, LvwProjects;
    ui::Toolbar tbPrj;
    ui::TextBox txtPrj;
    ui::Label txtPrjLabel;
    AddrDLG dlg_{LvwUser, tbPrj, txtPrj, txtPrjLabel, &LvwProjects};
    dao::Database book_;
    AddrFiltr savedFilter_{};
};

TEST_F(AddrDLGTest, AfterAFillTheTopRowIsTheLastRecordAndAClickStepsBothSets) {
    bool all = true;
    dlg_.DbInit(all);
    dlg_.ReFill();
    // The whole table, persons in no project included, from the last record up.
    ASSERT_EQ(RowTexts(LvwUser), "Archive Person,Nobody No Name,Smith,Иванов Иван");
    EXPECT_EQ(Current(dlg_.RsPersonal), 4);

    dlg_.LvwUser_ItemClick(LvwUser.ListItems().Item(4));
    EXPECT_EQ(Current(dlg_.RsPersonal), 1);
    EXPECT_EQ(Current(dlg_.DataPersonalFull), 1);
    dlg_.FillLvwProjects();
    EXPECT_EQ(RowTexts(LvwProjects), "A,A\\B");

    dlg_.LvwUser_ItemClick(LvwUser.ListItems().Item(2));
    EXPECT_EQ(Current(dlg_.RsPersonal), 3);
    EXPECT_EQ(Current(dlg_.DataPersonalFull), 3);
    dlg_.FillLvwProjects();
    EXPECT_EQ(LvwProjects.ListItems().Count(), 0);
}

TEST_F(AddrDLGTest, AProjectOrTheUnsortedChooseThePersonsAndTheKeysRefill) {
    dlg_.rProject = "A";
    bool all = false;
    dlg_.DbInit(all);
    EXPECT_EQ(Pressed(tbPrj), "CurPrj");
    EXPECT_EQ(txtPrj.Text(), "A");
    dlg_.ReFill();
    EXPECT_EQ(RowTexts(LvwUser), "Иванов Иван");
    EXPECT_EQ(RowTexts(LvwProjects), "A,A\\B");

    tbPrj.UserClick("NoPrj");
    EXPECT_EQ(RowTexts(LvwUser), "Nobody No Name");
    EXPECT_EQ(Pressed(tbPrj), "NoPrj");
    EXPECT_EQ(txtPrj.Text(), "");
    EXPECT_EQ(LvwProjects.ListItems().Count(), 0);

    tbPrj.UserClick("AllMsg");
    EXPECT_EQ(RowTexts(LvwUser), "Smith,Иванов Иван");  // every live member, once
    EXPECT_EQ(Pressed(tbPrj), "AllMsg");

    // The other side: the archive's members of the project path mapped across.
    tbPrj.UserClick("Projects");
    EXPECT_TRUE(dlg_.IsInsArcPrj());
    EXPECT_TRUE(dlg_.InsArcPrj);
    EXPECT_EQ(Pressed(tbPrj), "CurPrj");

    host_.QueueProjectPickerAnswer("Old");
    tbPrj.UserClick("Browse");
    EXPECT_EQ(RowTexts(LvwUser), "Archive Person");
    EXPECT_EQ(txtPrj.Text(), "Old");
}

TEST_F(AddrDLGTest, WithNoProjectTheUnsortedAndTheShellsFolderAndSide) {
    ShellPaths().SetCurrentFolder(ShellPaths().GetArchiveFolder() + "Old");
    bool all = false;
    dlg_.DbInit(all);
    EXPECT_TRUE(dlg_.InsArcPrj);
    EXPECT_EQ(dlg_.rProject, "Old");
    EXPECT_EQ(tbPrj.Buttons("Projects").Image(), Variant("Archive"));
    EXPECT_EQ(Pressed(tbPrj), "NoPrj");
    dlg_.ReFill();
    EXPECT_EQ(RowTexts(LvwUser), "Nobody No Name");
}

TEST_F(AddrDLGTest, ACancelledBrowseRestoresThePressedKeyAndChangesNothing) {
    bool all = false;
    dlg_.DbInit(all);
    dlg_.ReFill();
    // The person's click has pressed the check key on its way.
    tbPrj.Buttons("CurPrj").SetValue(ui::tbrPressed);
    host_.QueueProjectPickerAnswer(std::nullopt);
    tbPrj.UserClick("Browse");
    EXPECT_EQ(Pressed(tbPrj), "NoPrj");
    EXPECT_EQ(RowTexts(LvwUser), "Nobody No Name");
    EXPECT_EQ(txtPrj.Text(), "");
}

TEST_F(AddrDLGTest, WithNoArchiveFolderTheSideStaysAndThePersonIsTold) {
    std::filesystem::remove_all(ShellPaths().GetArchiveFolder());
    dlg_.rProject = "A";
    bool all = false;
    dlg_.DbInit(all);
    dlg_.ReFill();
    tbPrj.UserClick("Projects");
    ASSERT_EQ(host_.Log().size(), 1u);
    EXPECT_EQ(host_.Log()[0].prompt, "Archive of is empty!");
    EXPECT_FALSE(dlg_.IsInsArcPrj());
    EXPECT_EQ(RowTexts(LvwUser), "Иванов Иван");
}

}  // namespace
}  // namespace zelvo::testing
