// The address book window beside its list: the summary of the selected
// person, and the commands of the toolbars, the popup menu and the keys.
#include <filesystem>

#include "personswindow/frm_persons.h"
#include "personswindow/person_summary.h"
#include "platform/imaging/encode_png.h"
#include "platform/ui/scripted_host.h"
#include "support/control_text.h"
#include "window_fixture.h"
#include "zelvo/enums.h"

namespace zelvo::testing {
namespace {

class FrmPersonsCommandsTest : public PersonsWindowTest {
protected:
    // The first column of every row of `sql`.
    std::vector<int> Column0(const std::string& sql) {
        std::vector<int> v;
        for (auto rs = db_.OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext()) v.push_back(ValueConv::ToLong(rs.Value(0)));
        return v;
    }
    int LastId(const std::string& table, const std::string& key) {
        auto rs = db_.OpenRecordset("Select Max([" + key + "]) From " + table);
        return ValueConv::ToLong(rs.Value(0));
    }
    int Resource(const std::string& text, int type, int owner, int ownerType) {
        db_.Execute("Insert Into Resources (ResourceString, ResourceType) Values (\"" + text + "\", " +
                    std::to_string(type) + ")");
        int id = LastId("Resources", "Resource ID");
        db_.Execute("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (" +
                    std::to_string(id) + ", " + std::to_string(owner) + ", " + std::to_string(ownerType) + ")");
        return id;
    }
    int Node(int parent, int level, const std::string& text, const std::string& index = {}) {
        db_.Execute("Insert Into PostAddresses ([aParent ID], aType, Address, PostIndex) Values (" +
                    std::to_string(parent) + ", " + std::to_string(level) + ", \"" + text + "\", " +
                    (index.empty() ? std::string("Null") : "\"" + index + "\"") + ")");
        return LastId("PostAddresses", "Address ID");
    }
    int Unit(const std::string& name, int parent) {
        db_.Execute("Insert Into Organizations (Organization, [Parent ID]) Values (\"" + name + "\", " +
                    std::to_string(parent) + ")");
        return LastId("Organizations", "Organization ID");
    }
    int Job(int unit, const std::string& title, int person) {
        db_.Execute("Insert Into JobTitles ([Organization ID], JobTitle) Values (" + std::to_string(unit) + ", \"" +
                    title + "\")");
        int job = LastId("JobTitles", "Job ID");
        db_.Execute("Insert Into Employees ([Job ID], [Personal ID], [Room ID]) Values (" + std::to_string(job) +
                    ", " + std::to_string(person) + ", 0)");
        return job;
    }
    void Photo(int person, int width, int height) {
        imaging::Picture pic;
        pic.Width = width;
        pic.Height = height;
        pic.Pixels.assign(std::size_t(width) * height * 3, 0x40);
        dao::Recordset rs = db_.OpenRecordset("Photo", dao::dbOpenTable);
        rs.AddNew();
        rs.SetValue("Personal ID", Variant(std::int64_t{person}));
        rs.SetValue("Photo", Variant(imaging::EncodePng(pic)));
        rs.Update();
    }

    // Person 1 with every kind of data: a home address of three levels with
    // a phone of its own, two jobs (the first in a subdivision), the job's
    // phone and mail, a web page and a photo.
    void GiveIvanEverything() {
        int country = Node(0, 0, "Russia", "101000");
        int city = Node(country, 2, "Moscow");
        int street = Node(city, 3, "Tverskaya 1");
        db_.Execute("Insert Into AddressesOwners ([Address ID], [Owner ID], OwnerType) Values (" +
                    std::to_string(street) + ", 1, 0)");
        Resource("+7 495 000-00-00", 0, street, 8);
        int acme = Unit("Acme", 0);
        int sales = Unit("Sales", acme);
        int manager = Job(sales, "Manager", 1);
        Resource("+7 495 111-11-11", 0, LastId("Employees", "Employee ID"), 4);
        Resource("sales@acme.example", 2, manager, 2);
        int director = Job(acme, "Director", 1);
        Resource("+7 495 999-99-99", 0, director, 2);
        Resource("ivan.example.org", 1, 1, 0);
        Photo(1, 40, 30);
    }

    frmPersons& Open(std::int32_t filter = AllPersons) {
        form_ = std::make_unique<frmPersons>();
        form_->PrjFilter = filter;
        form_->Navigate();
        return *form_;
    }
    // Selects the row of `name` as a person's click does.
    void Select(frmPersons& f, const std::string& name) {
        for (int i = 1; i <= f.LvwUser.ListItems().Count(); ++i)
            if (f.LvwUser.ListItems().Item(i).Text() == name) {
                ASSERT_TRUE(f.LvwUser.UserSelect({i}));
                return;
            }
        FAIL() << "no row " << name;
    }

    ui::ScriptedUiHost host_;
    ui::ScopedUiHost scope_{host_};
    std::unique_ptr<frmPersons> form_;
};

TEST_F(FrmPersonsCommandsTest, TheSummaryShowsEveryKindOfDataWithTheFirstJobOnly) {
    GiveIvanEverything();
    frmPersons& f = Open();
    Select(f, "Иванов Иван");
    EXPECT_EQ(f.txtName.Text(), "Иванов Иван");
    EXPECT_EQ(f.txtAddress.Text(), "101000, Russia, Moscow, Tverskaya 1");
    // The person's own phone and the phone of the address node.
    EXPECT_EQ(f.txtHomePhone.Text(), "+7 495 123-45-67,   +7 495 000-00-00");
    EXPECT_EQ(f.txtJob.Text(), "Acme, Sales, Manager");
    // The employee's phone; the second job's title phone is not shown.
    EXPECT_EQ(f.txtOrgPhone.Text(), "+7 495 111-11-11");
    EXPECT_EQ(RowTexts(f.lvwEmail, "|"), "ivan@example.org|ivanov@work.example|sales@acme.example");
    EXPECT_EQ(f.lvwEmail.ListItems().Item(1).Icon(), Variant("Email"));
    EXPECT_EQ(RowTexts(f.lvwWeb, "|"), "ivan.example.org");
    EXPECT_EQ(f.lvwWeb.ListItems().Item(1).Icon(), Variant("IE"));
    EXPECT_EQ(RowTexts(f.lvwPrj, "|"), "A|A\\B");
    ASSERT_TRUE(f.ScaledPicture.Image);
    EXPECT_FALSE(f.ScaledPicture.Image->Empty());
    EXPECT_TRUE(f.cmdLetter.Enabled());
    EXPECT_TRUE(f.cmdGoWeb.Enabled());
    EXPECT_TRUE(f.Toolbar1.Buttons("mPack").Enabled());
    EXPECT_TRUE(f.mnPop.Find("ABPack")->Enabled());

    // The window and the terminal read the same summary.
    PersonSummary s = ReadPersonSummary(db_, 1);
    EXPECT_EQ(s.Name, "Иванов Иван");
    EXPECT_EQ(s.Job, f.txtJob.Text());
    EXPECT_EQ(s.Projects.size(), 2u);
}

TEST_F(FrmPersonsCommandsTest, APersonWithNothingLeavesTheTabsEmptyAndSaysNothing) {
    GiveIvanEverything();
    db_.Execute("Delete From Projects Where [Owner ID]=1");  // Ivan joins the unsorted
    frmPersons& f = Open(NoPrj);
    Select(f, "Иванов Иван");
    ASSERT_EQ(f.txtJob.Text(), "Acme, Sales, Manager");
    Select(f, "Nobody No Name");  // no address, no job, no mail, no project
    for (ui::TextBox* box : {&f.txtAddress, &f.txtHomePhone, &f.txtJob, &f.txtOrgPhone})
        EXPECT_EQ(box->Text(), "");
    EXPECT_EQ(f.lvwEmail.ListItems().Count() + f.lvwWeb.ListItems().Count() + f.lvwPrj.ListItems().Count(), 0);
    EXPECT_FALSE(f.ScaledPicture.Image);
    EXPECT_FALSE(f.cmdLetter.Enabled());
    EXPECT_FALSE(f.cmdGoWeb.Enabled());
    EXPECT_FALSE(f.Toolbar1.Buttons("mPack").Enabled());
    // Filing is possible, taking away or archiving is not.
    EXPECT_TRUE(f.TbPrjProp.Buttons("Add").Enabled());
    EXPECT_FALSE(f.TbPrjProp.Buttons("Del").Enabled());
    EXPECT_FALSE(f.TbPrjProp.Buttons("PrjArcPrj").Enabled());
    EXPECT_TRUE(host_.Log().empty());

    // The home phones come with an address: without one Ivan's own phone
    // stays off the summary, and an address alone shows without phones.
    db_.Execute("Delete From AddressesOwners Where [Owner ID]=1");
    Select(f, "Иванов Иван");
    EXPECT_EQ(f.txtAddress.Text(), "");
    EXPECT_EQ(f.txtHomePhone.Text(), "");
    int node = Node(0, 2, "Omsk");
    db_.Execute("Insert Into AddressesOwners ([Address ID], [Owner ID], OwnerType) Values (" + std::to_string(node) +
                ", 3, 0)");
    Select(f, "Nobody No Name");
    EXPECT_EQ(f.txtAddress.Text(), "Omsk");
    EXPECT_EQ(f.txtHomePhone.Text(), "");
}

TEST_F(FrmPersonsCommandsTest, ImportAndExportAreHiddenAndTheOtherKeysFollowTheList) {
    frmPersons& f = Open();
    EXPECT_FALSE(f.Toolbar1.Buttons("Import").Visible());
    EXPECT_FALSE(f.Toolbar1.Buttons("Export").Visible());
    for (const char* key : {"New", "Del", "Prop", "Refresh", "Compress", "Help"})
        EXPECT_TRUE(f.Toolbar1.Buttons(key).Visible()) << key;

    // An empty list: nothing to delete, open or file.
    f.PrjFilter = CurPrj;
    f.rProject = "Nowhere";
    f.Navigate();
    for (const char* key : {"Del", "Prop", "mPack"}) EXPECT_FALSE(f.Toolbar1.Buttons(key).Enabled()) << key;
    EXPECT_FALSE(f.cmdPersProp.Enabled());
    EXPECT_FALSE(f.TbPrjProp.Buttons("Add").Enabled());
    EXPECT_TRUE(f.Toolbar1.Buttons("New").Enabled());
}

TEST_F(FrmPersonsCommandsTest, DeleteTakesEverySelectedPersonAndRefillsOnce) {
    db_.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (3, 0, \"C\", False)");
    frmPersons& f = Open();
    ASSERT_EQ(f.LvwUser.ListItems().Count(), 3);  // the live side: 1, 2 and 3
    const int before = host_.DoEventsCalls();
    f.Navigate();
    const int oneRefill = host_.DoEventsCalls() - before;

    ASSERT_TRUE(f.LvwUser.UserSelect({1, 2, 3}));
    const int start = host_.DoEventsCalls();
    ASSERT_TRUE(f.Toolbar1.UserClick("Del"));
    EXPECT_EQ(host_.DoEventsCalls() - start, oneRefill);
    EXPECT_TRUE(host_.Log().empty());  // no question asked
    EXPECT_EQ(f.LvwUser.ListItems().Count(), 0);
    EXPECT_EQ(Ids("Select [Personal ID] From PersonalData"), std::vector<int>{4});
    // What hung on them went with them; the archived person's row stayed.
    EXPECT_EQ(LastId("ResourcesOwners", "Resource ID"), 0);
    EXPECT_EQ(Column0("Select [Owner ID] From Projects"), std::vector<int>{4});
}

TEST_F(FrmPersonsCommandsTest, ShiftDeleteOnTheListDeletesLikeTheKeyAndPlainDeleteDoesNot) {
    frmPersons& f = Open();
    Select(f, "Smith");
    f.LvwUser_KeyDown(vbKeyDelete, 0);
    EXPECT_EQ(f.LvwUser.ListItems().Count(), 2);
    f.LvwUser_KeyDown(vbKeyF8, vbShiftMask);
    EXPECT_EQ(Ids("Select [Personal ID] From PersonalData Where FullName=\"Smith\""), std::vector<int>{});
    EXPECT_EQ(f.LvwUser.ListItems().Count(), 1);
    Select(f, "Иванов Иван");
    f.LvwUser_KeyDown(vbKeyDelete, vbShiftMask);
    EXPECT_EQ(f.LvwUser.ListItems().Count(), 0);
}

TEST_F(FrmPersonsCommandsTest, NewUnderAllPersonsWithThePickerCancelledMakesAnUnsortedPerson) {
    frmPersons& f = Open();
    host_.QueueProjectPickerAnswer(std::nullopt);
    host_.QueueMessageBoxAnswer(1);
    ASSERT_TRUE(f.Toolbar1.UserClick("New"));
    ASSERT_EQ(host_.PickerLog().size(), 1u);
    EXPECT_EQ(host_.PickerLog()[0].title, "Choosing a component project");
    // The message, then the new person's card.
    ASSERT_EQ(host_.Log().size(), 2u);
    EXPECT_EQ(host_.Log()[0].prompt, "The added person will be unsorted!");
    EXPECT_EQ(host_.Log()[0].buttons, 64);
    EXPECT_EQ(host_.Log()[1].kind, ui::ScriptedUiHost::Shown::Window);
    EXPECT_EQ(host_.Log()[1].prompt, "frmMain");
    const int id = LastId("PersonalData", "Personal ID");
    EXPECT_EQ(id, 5);
    EXPECT_EQ(Column0("Select [Owner ID] From Projects Where [Owner ID]=5"), std::vector<int>{});
    EXPECT_TRUE(host_.AllAnswersUsed());

    // Picked, the person is filed there; under a project nothing is asked.
    host_.QueueProjectPickerAnswer("P");
    f.Toolbar1.UserClick("New");
    EXPECT_EQ(Column0("Select [Owner ID] From Projects Where Project=\"P\""), std::vector<int>{6});
    f.PrjFilter = CurPrj;
    f.rProject = "A";
    f.Navigate();
    const size_t asked = host_.PickerLog().size();
    f.Toolbar1.UserClick("New");
    EXPECT_EQ(host_.PickerLog().size(), asked);
    EXPECT_EQ(Column0("Select [Owner ID] From Projects Where Project=\"A\" And [Owner ID]=7"),
              std::vector<int>{7});
    EXPECT_EQ(f.LvwUser.ListItems().Count(), 2);  // refilled: Иванов and the new one
}

TEST_F(FrmPersonsCommandsTest, TheProjectToolbarFilesTakesAwayAndArchivesTheSelectedPersonsRows) {
    frmPersons& f = Open();
    Select(f, "Smith");
    ASSERT_EQ(RowTexts(f.lvwPrj, "|"), "AB");
    EXPECT_EQ(f.TbPrjProp.Buttons("PrjArcPrj").Caption(), "to Archive");

    host_.QueueProjectPickerAnswer("Z");
    f.TbPrjProp.UserClick("Add");
    EXPECT_EQ(RowTexts(f.lvwPrj, "|"), "AB|Z");

    // The selected row goes to the archive and stays selected; the key
    // then offers the way back.
    ASSERT_TRUE(f.lvwPrj.UserSelect({2}));
    f.TbPrjProp.UserClick("PrjArcPrj");
    EXPECT_EQ(Column0("Select [Owner ID] From Projects Where InsArcPrj=True And [Owner ID]=2"),
              std::vector<int>{2});
    ASSERT_TRUE(f.lvwPrj.SelectedItem());
    EXPECT_EQ(f.lvwPrj.SelectedItem()->Icon(), Variant("Archive"));
    EXPECT_EQ(f.TbPrjProp.Buttons("PrjArcPrj").Caption(), "from Archive");
    EXPECT_EQ(f.TbPrjProp.Buttons("PrjArcPrj").ToolTipText(), "Restore from Archive");

    ASSERT_TRUE(f.lvwPrj.UserSelect({1}));
    EXPECT_EQ(f.TbPrjProp.Buttons("PrjArcPrj").Caption(), "to Archive");
    f.TbPrjProp.UserClick("Del");
    EXPECT_EQ(f.lvwPrj.ListItems().Count(), 1);
    EXPECT_EQ(Column0("Select [Owner ID] From Projects Where Project=\"AB\""), std::vector<int>{});
}

TEST_F(FrmPersonsCommandsTest, TheViewChosenInThePopupMenuIsKeptForTheNextWindow) {
    {
        frmPersons& f = Open();
        EXPECT_EQ(f.LvwUser.View(), ui::lvwList);
        EXPECT_TRUE(f.mnPop.Find("ViewList")->Checked());
        ASSERT_TRUE(f.mnPop.Find("ViewPhoto")->UserClick());
        EXPECT_EQ(f.LvwUser.View(), ui::lvwIcon);
        EXPECT_TRUE(f.ExtractPhoto);
        EXPECT_TRUE(f.mnPop.Find("ViewPhoto")->Checked());
        f.Unload();
    }
    {
        frmPersons& f = Open();
        EXPECT_TRUE(f.ExtractPhoto);
        EXPECT_EQ(f.LvwUser.View(), ui::lvwIcon);
        ASSERT_TRUE(f.mnPop.Find("ViewList")->UserClick());
        f.Unload();
    }
    frmPersons& f = Open();
    EXPECT_FALSE(f.ExtractPhoto);
    EXPECT_EQ(f.LvwUser.View(), ui::lvwList);
}

TEST_F(FrmPersonsCommandsTest, ARightClickOffTheRowsOffersOnlyTheView) {
    frmPersons& f = Open();
    EXPECT_FALSE(f.LvwUser_MouseUp(1, 0, 1));             // the left button
    EXPECT_FALSE(f.LvwUser_MouseUp(vbRightButton, 1, 1));  // with Shift
    ASSERT_TRUE(f.LvwUser_MouseUp(vbRightButton, 0, 0));
    for (const char* key : {"Prop", "ABPack", "spPack"}) EXPECT_FALSE(f.mnPop.Find(key)->Visible()) << key;
    EXPECT_TRUE(f.mnPop.Find("View")->Visible());
    ASSERT_TRUE(f.LvwUser_MouseUp(vbRightButton, 0, 2));
    for (const char* key : {"Prop", "ABPack", "spPack"}) EXPECT_TRUE(f.mnPop.Find(key)->Visible()) << key;
    EXPECT_EQ(f.Personal_ID(), ValueConv::ToLong(f.LvwUser.ListItems().Item(2).Tag()));
    EXPECT_EQ(f.txtName.Text(), f.LvwUser.ListItems().Item(2).Text());
}

TEST_F(FrmPersonsCommandsTest, F11TogglesMaximizedButLeavesAMinimizedWindowAlone) {
    frmPersons& f = Open();
    f.Form_KeyDown(vbKeyF11, 0);
    EXPECT_EQ(f.WindowState(), ui::vbMaximized);
    f.Form_KeyDown(vbKeyF11, 0);
    EXPECT_EQ(f.WindowState(), ui::vbNormal);
    f.SetWindowState(ui::vbMinimized);
    f.Form_KeyDown(vbKeyF11, 0);
    EXPECT_EQ(f.WindowState(), ui::vbMinimized);
}

TEST_F(FrmPersonsCommandsTest, CompressReopensTheBookAndTheListComesBack) {
    db_.Close();  // the window's book is the only one open
    frmPersons& f = Open();
    Select(f, "Smith");
    ASSERT_TRUE(f.Toolbar1.UserClick("Compress"));
    EXPECT_TRUE(f.DatabaseOpen());
    EXPECT_EQ(f.LvwUser.ListItems().Count(), 2);
    // The first row is the selected one again, with its summary.
    EXPECT_EQ(f.txtName.Text(), f.LvwUser.ListItems().Item(1).Text());
}

}  // namespace
}  // namespace zelvo::testing
