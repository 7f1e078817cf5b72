#include "personcard/frm_main.h"

#include <filesystem>

#include "personcard/show_person_card.h"
#include "personslist/persons_book.h"
#include "platform/ui/scripted_host.h"
#include "support/shared_data.h"
#include "zelvo/addressbook.h"

namespace zelvo::testing {
namespace {

std::string Items(const ui::ComboBox& box) {
    std::string s;
    for (int i = 0; i < box.ListCount(); ++i) s += (i ? "|" : "") + box.List(i);
    return s;
}

std::string Rows(const ui::ListView& lv) {
    std::string s;
    for (int i = 1; i <= lv.ListItems().Count(); ++i) s += (i > 1 ? "," : "") + lv.ListItems().Item(i).Text();
    return s;
}

class FrmMainTest : public PersonsBookTest {
protected:
    void SetUp() override {
        PersonsBookTest::SetUp();
        ShellPaths().SetCurrentFolder({});
    }
    void TearDown() override {
        ShellPaths().SetCurrentFolder({});
        PersonsBookTest::TearDown();
    }
    // The name columns of a person as "FirstName/MiddleName/Surname/FullName".
    std::string Stored(int id) {
        auto rs = db_.OpenRecordset("Select * From PersonalData Where [Personal ID]=" + std::to_string(id));
        if (rs.IsEOF()) return "(none)";
        std::string s;
        for (const char* c : {"FirstName", "MiddleName", "Surname", "FullName"})
            s += (s.empty() ? "" : "/") + ValueConv::ToText(rs(c));
        return s;
    }
    // A card loaded and read as ShowPersonCard does, without the wait.
    std::unique_ptr<frmMain> Card(int id, const std::string& project = {}, bool archive = false) {
        auto card = std::make_unique<frmMain>();
        card->ShowMode = 1;
        card->Personal_ID = id;
        card->rProject = project;
        card->InsArcPrj = archive;
        card->AllPersons = project.empty();
        card->Form_Load();
        card->ReadData();
        return card;
    }
    ui::ScriptedUiHost host_;
    ui::ScopedUiHost scope_{host_};
};

TEST_F(FrmMainTest, ShowPersPropOpensTheCardOnHomeAndATypedNameStaysAfterCancel) {
    cAddressbook book;
    book.AppPath = AppPath;
    std::string caption, family, fullName, emails;
    int tab = -1;
    host_.QueueWindowAction([&](ui::Form& form) {
        ASSERT_EQ(form.Name(), "frmMain");
        auto& card = static_cast<frmMain&>(form);
        caption = card.Caption();
        family = card.txtFamily.Text();
        fullName = card.Combo1.Text();
        emails = Rows(card.lvwEmail);
        tab = card.SSTab1.Tab();
        card.txtFamily.UserType("Петров");
        card.cmdCancel.UserClick();
    });
    book.ShowPersProp(1);
    EXPECT_EQ(caption, "Иванов Иван - the reference data");
    EXPECT_EQ(family, "Иванов");
    EXPECT_EQ(fullName, "Иванов Иван");
    EXPECT_EQ(emails, "ivan@example.org,ivanov@work.example");
    EXPECT_EQ(tab, 1);
    // Cancel undoes nothing, and the display name is the person's choice.
    EXPECT_EQ(Stored(1), "Петров/Иван/Иванович/Иванов Иван");
    EXPECT_EQ(host_.Log().size(), 1u);  // the window, and no message
}

TEST_F(FrmMainTest, NameBoxesWriteAtEveryChangeAndFullNameOnlyThroughTheDisplayBox) {
    auto card = Card(3);
    EXPECT_EQ(card->Combo1.Text(), "");

    EXPECT_EQ(Items(card->Combo1), "Nobody No Name|No Name Nobody|Nobody N. N.|N. N. Nobody");

    card->txtName.UserType("Nat ");
    EXPECT_EQ(Stored(3), "Nobody/Nat /Name/");  // as typed, blank and all
    card->txtMiddleName.UserType("");
    card->txtFamily.UserType("Noone");
    EXPECT_EQ(Stored(3), "Noone/Nat //");
    // The suggestions follow the boxes.
    // Each part with a blank after it: the typed blank stays inside.
    EXPECT_EQ(Items(card->Combo1), "Noone Nat|Nat  Noone|Noone N.|N. Noone");

    card->Combo1.UserSelect(1);
    EXPECT_EQ(Stored(3), "Noone/Nat //Nat  Noone");
    card->Combo1.UserType("Natty");
    EXPECT_EQ(Stored(3), "Noone/Nat //Natty");
    EXPECT_EQ(Items(card->Combo1), "Noone Nat|Nat  Noone|Noone N.|N. Noone|Natty");
    // Another person's row is untouched.
    EXPECT_EQ(Stored(1), "Иванов/Иван/Иванович/Иванов Иван");
}

TEST_F(FrmMainTest, TheHomeTabListsThePersonsOwnAddressesPhonesPagesAndNumbers) {
    db_.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\" www.example.org \", 1)");
    db_.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"123456\", 4)");
    db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (5, 1, 0)");
    db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (6, 2, 0)");
    auto card = Card(1);
    EXPECT_EQ(Rows(card->lvwEmail), "ivan@example.org,ivanov@work.example");
    EXPECT_EQ(Rows(card->lvwHomePhones), "+7 495 123-45-67");
    EXPECT_EQ(Rows(card->lvwHomeWeb), "www.example.org");
    EXPECT_EQ(card->LvwICQ.ListItems().Count(), 0);  // the number is Smith's
    EXPECT_TRUE(card->cmdLetter.Visible());
    EXPECT_TRUE(card->cmdGoHomeWeb.Visible());
    EXPECT_TRUE(card->cmdPack.Enabled());

    auto smith = Card(2);
    EXPECT_EQ(Rows(smith->LvwICQ), "123456");
    EXPECT_EQ(smith->lvwHomePhones.ListItems().Count(), 0);
    EXPECT_FALSE(smith->cmdGoHomeWeb.Visible());
    // Without an address of its own the correspondence has nothing to start from.
    auto nobody = Card(3);
    EXPECT_FALSE(nobody->cmdPack.Enabled());
    EXPECT_FALSE(nobody->cmdLetter.Visible());
}

TEST_F(FrmMainTest, TheOrganizationIsASuggestion) {
    auto card = Card(2);
    card->txtOrg.SetText("Acme Ltd");
    EXPECT_EQ(Items(card->Combo1), "Smith|Smith|Smith|Smith|Acme Ltd");
    card->Combo1.UserSelect(4);
    EXPECT_EQ(Stored(2), "Smith///Acme Ltd");
}

TEST_F(FrmMainTest, APersonNotInTheCardsProjectOrMissingShowsNothingAndWritesNothing) {
    for (auto [id, project] : {std::pair{1, "AB"}, {99, ""}}) {
        SCOPED_TRACE(project);
        auto card = Card(id, project);
        EXPECT_EQ(card->Caption(), " - the reference data");
        EXPECT_EQ(card->txtFamily.Text(), "");
        EXPECT_EQ(card->Combo1.Text(), "");
        EXPECT_EQ(card->lvwEmail.ListItems().Count(), 0);
        EXPECT_EQ(card->LvwProjects.ListItems().Count(), 0);
        card->txtFamily.UserType("Ghost");
        card->Combo1.UserType("Ghost");
    }
    EXPECT_EQ(Stored(1), "Иванов/Иван/Иванович/Иванов Иван");
    EXPECT_EQ(Stored(2), "Smith///Smith");
    EXPECT_EQ(Stored(99), "(none)");
    EXPECT_TRUE(host_.Log().empty());
}

TEST_F(FrmMainTest, ACardOpenedInAProjectFindsThePersonThroughItsMembership) {
    auto card = Card(1, "A\\B");
    EXPECT_EQ(card->txtName.Text(), "Иван");
    EXPECT_EQ(Rows(card->LvwProjects), "A,A\\B");
    card->txtName.UserType("Ваня");
    EXPECT_EQ(Stored(1), "Иванов/Ваня/Иванович/Иванов Иван");
}

TEST_F(FrmMainTest, TheProjectsTabFollowsThePersonsMemberships) {
    auto card = Card(3);
    EXPECT_FALSE(card->Toolbar1.Buttons("Del").Enabled());
    EXPECT_FALSE(card->Toolbar1.Buttons("InsArcPrj").Enabled());

    // Add files the person into the picked project, and the tab shows it.
    host_.QueueProjectPickerAnswer("A");
    card->Toolbar1.UserClick("Add");
    EXPECT_EQ(Rows(card->LvwProjects), "A");
    EXPECT_TRUE(card->Toolbar1.Buttons("Del").Enabled());
    EXPECT_EQ(Ids("Select [Owner ID] As [Personal ID] From Projects Where Project=\"A\" And OwnerType=0"),
              (std::vector<int>{1, 3}));

    // An archived row offers the way back.
    auto archived = Card(4);
    EXPECT_EQ(archived->Toolbar1.Buttons("InsArcPrj").Image(), Variant("Prj"));
    EXPECT_EQ(archived->Toolbar1.Buttons("InsArcPrj").Caption(), "from Archive");
    EXPECT_TRUE(archived->InsArcPrj);
}

TEST_F(FrmMainTest, APhotoAddedIsShownAndDeletingTheLastBringsBackThePlaceHolder) {
    if (!SharedImagesPresent()) GTEST_SKIP() << "the shared images are not beside the checkout";
    auto card = Card(2);
    EXPECT_TRUE(card->txtPhoto.Visible());
    EXPECT_FALSE(card->cmdDeletePhoto.Visible());

    host_.QueueFileDialogAnswer(std::string(ZELVO_SHARED_DATA) + "/images/camera.png");
    card->cmdAddPhoto.UserClick();
    ASSERT_NE(card->ScaledPicture.Image, nullptr);
    EXPECT_FALSE(card->txtPhoto.Visible());
    EXPECT_TRUE(card->cmdDeletePhoto.Visible());
    EXPECT_EQ(Ids("Select [Personal ID] From Photo"), (std::vector<int>{2}));

    card->cmdDeletePhoto.UserClick();
    EXPECT_TRUE(Ids("Select [Personal ID] From Photo").empty());
    EXPECT_TRUE(card->txtPhoto.Visible());
    EXPECT_FALSE(card->cmdDeletePhoto.Visible());
}

TEST_F(FrmMainTest, ClosingKeepsTheBookAsItIsAndReleasesIt) {
    auto card = Card(1);
    card->Show();
    card->cmdOK.UserClick();
    EXPECT_FALSE(card->Visible());
    EXPECT_TRUE(card->DatabaseOpen());  // hidden, still loaded
    card->Unload();
    EXPECT_FALSE(card->DatabaseOpen());
    EXPECT_EQ(card->Caption(), "Address book");
    EXPECT_EQ(card->ShowMode, 0);
    EXPECT_FALSE(card->CancelCompressing);
}

TEST_F(FrmMainTest, OpeningACardBringsAnOlderBookToTodaysLayout) {
    // A book without the table of rooms, as earlier installations left it.
    db_.Execute("Drop Table Rooms");
    db_.Close();
    auto card = Card(2);
    EXPECT_EQ(card->txtFamily.Text(), "Smith");
    EXPECT_TRUE(card->DatabaseOpen());
    db_ = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access");
    EXPECT_NO_THROW(db_.OpenRecordset("Rooms"));
}

}  // namespace
}  // namespace zelvo::testing
