// Persons in and out through cAddressbook: AddPersonbyStrMail, AddNewPerson
// and DeletePerson on the sample book.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "personcard/person_records.h"
#include "personslist/persons_book.h"
#include "platform/dao/dbengine.h"
#include "platform/ui/scripted_host.h"
#include "zelvo/addressbook.h"

namespace zelvo::testing {
namespace {

constexpr const char* kTables[] = {"PersonalData", "Resources", "ResourcesOwners", "Projects",
                                   "Employees",    "Photo",     "AddressesOwners"};

class PersonIntakeTest : public PersonsBookTest {
protected:
    void SetUp() override {
        PersonsBookTest::SetUp();
        db_.Close();  // the object opens the book itself
        book_.AppPath = dir_.path().string();
    }

    dao::Database Open() { return dao::Engine().OpenDatabase(DatabasePath()); }
    void Exec(const std::string& sql) { Open().Execute(sql); }

    // Every row of `sql`, each as its values joined by "|".
    std::vector<std::string> Rows(const std::string& sql) {
        dao::Database db = Open();
        std::vector<std::string> rows;
        for (auto rs = db.OpenRecordset(sql, dao::dbOpenSnapshot); !rs.IsEOF(); rs.MoveNext()) {
            std::string row;
            for (int i = 0; i < rs.Fields().Count(); ++i)
                row += (i ? "|" : "") + ValueConv::ToText(rs.Value(i));
            rows.push_back(row);
        }
        return rows;
    }
    std::map<std::string, std::vector<std::string>> Everything(const std::vector<std::string>& tables = {
                                                                   std::begin(kTables), std::end(kTables)}) {
        std::map<std::string, std::vector<std::string>> all;
        for (const std::string& t : tables) all[t] = Rows("Select * From " + t);
        return all;
    }
    std::set<int> Column(const std::string& sql) {
        dao::Database db = Open();
        std::set<int> ids;
        for (auto rs = db.OpenRecordset(sql, dao::dbOpenSnapshot); !rs.IsEOF(); rs.MoveNext())
            ids.insert(ValueConv::ToLong(rs.Value(0)));
        return ids;
    }

    // What AddPersonbyStrMail wrote for the newest person: its FullName, its
    // e-mail addresses and its project rows.
    struct Written {
        std::string fullName;
        std::vector<std::string> mails;
        std::vector<std::string> projects;
    };
    Written Newest() {
        Written w;
        auto persons = Rows("Select [Personal ID], FullName From PersonalData Order By [Personal ID] Desc");
        std::string id = persons.front().substr(0, persons.front().find('|'));
        w.fullName = persons.front().substr(persons.front().find('|') + 1);
        w.mails = Rows("Select ResourceString From Resources Inner Join ResourcesOwners On "
                       "Resources.[Resource ID]=ResourcesOwners.[Resource ID] Where [Owner ID]=" + id +
                       " And [OwnerType]=0 And [ResourceType]=2");
        w.projects = Rows("Select Project, InsArcPrj From Projects Where [Owner ID]=" + id + " And OwnerType=0");
        return w;
    }

    // The message boxes shown; the card's window is left out.
    std::vector<ui::ScriptedUiHost::Shown> Messages() const {
        std::vector<ui::ScriptedUiHost::Shown> shown;
        for (const auto& s : host_.Log())
            if (s.kind == ui::ScriptedUiHost::Shown::MessageBox) shown.push_back(s);
        return shown;
    }

    cAddressbook book_;
    ui::ScriptedUiHost host_;
    ui::ScopedUiHost scope_{host_};
};

TEST_F(PersonIntakeTest, AMailStringBecomesAPersonWithItsAddressInTheCurrentProject) {
    struct Case {
        const char* mail;
        std::string fullName;
        std::vector<std::string> mails;
    } cases[] = {
        {"\"Иванов, Иван\" <ivan@example.org>", "Иванов, Иван", {"ivan@example.org"}},
        {"Ivan Petrov <petrov@example.org>", "Ivan Petrov", {"petrov@example.org"}},
        // With no name the address is the name too.
        {"bare@example.org", "bare@example.org", {"bare@example.org"}},
        {"=?KOI8-R?B?8MXU0s/X?= <koi@example.ru>", "Петров", {"koi@example.ru"}},
        // No "@": a person with a name and no address.
        {"Just A Name", "Just A Name", {}},
    };
    book_.rProject = "Inbox\\Senders";
    book_.InsArcPrj = true;
    for (const Case& c : cases) {
        std::string mail = c.mail;
        book_.AddPersonbyStrMail(mail);
        Written w = Newest();
        EXPECT_EQ(w.fullName, c.fullName) << c.mail;
        EXPECT_EQ(w.mails, c.mails) << c.mail;
        EXPECT_EQ(w.projects, (std::vector<std::string>{"Inbox\\Senders|True"})) << c.mail;
        EXPECT_EQ(mail, c.mail);  // the caller's text is left as it was
    }
    EXPECT_EQ(AppPath, book_.AppPath);
    EXPECT_TRUE(Messages().empty());
    // A sender already in the book is not looked up: a second person.
    std::string again = "ivan@example.org";
    book_.AddPersonbyStrMail(again);
    EXPECT_EQ(Rows("Select [Resource ID] From Resources Where ResourceString=\"ivan@example.org\"").size(), 3u);
}

TEST_F(PersonIntakeTest, WithoutAProjectThePersonIsFiledNowhere) {
    std::string mail = "Loner <loner@example.org>";
    book_.AddPersonbyStrMail(mail);
    EXPECT_EQ(Newest().fullName, "Loner");
    EXPECT_TRUE(Newest().projects.empty());

    book_.AddNewPerson();
    EXPECT_EQ(Newest().fullName, "");
    EXPECT_TRUE(Newest().projects.empty());
    book_.rProject = "A";
    book_.AddNewPerson();
    EXPECT_EQ(Newest().projects, (std::vector<std::string>{"A|False"}));
    EXPECT_EQ(Rows("Select * From PersonalData").size(), 7u);
}

TEST_F(PersonIntakeTest, BlanksAndPunctuationWriteNothing) {
    auto before = Everything();
    book_.rProject = "A";
    for (std::string mail : {"", "   ", "\t\r\n", ",", "<>", "\"\""}) {
        book_.AddPersonbyStrMail(mail);
        EXPECT_EQ(Everything(), before) << "[" << mail << "]";
    }
    EXPECT_TRUE(host_.Log().empty());
}

TEST_F(PersonIntakeTest, ATextTooLongForItsColumnIsRefusedBeforeAnythingIsWritten) {
    auto before = Everything();
    std::string longName = std::string(300, 'N') + " <n@example.org>";
    book_.AddPersonbyStrMail(longName);
    std::string longAddress = "Name <" + std::string(300, 'a') + "@example.org>";
    book_.AddPersonbyStrMail(longAddress);
    book_.rProject = std::string(256, 'P');
    std::string fine = "Fine <fine@example.org>";
    book_.AddPersonbyStrMail(fine);
    EXPECT_EQ(Everything(), before);
    ASSERT_EQ(Messages().size(), 3u);
    for (const auto& shown : Messages()) {
        EXPECT_EQ(shown.buttons, ui::vbExclamation);
        EXPECT_NE(shown.prompt.find("255"), std::string::npos) << shown.prompt;
    }
    // 255 Cyrillic letters are 510 bytes and fit: the column counts characters.
    book_.rProject.clear();
    std::string name;
    for (int i = 0; i < 255; ++i) name += "Ж";
    std::string cyrillic = name + " <zh@example.org>";
    book_.AddPersonbyStrMail(cyrillic);
    EXPECT_EQ(Newest().fullName, name);
    // An empty person cannot be filed in a project too long for its column,
    // and is not left unfiled either.
    before = Everything();
    EXPECT_EQ(NewPersonRecord(std::string(256, 'P'), false), 0);
    EXPECT_EQ(Everything(), before);
}

TEST_F(PersonIntakeTest, AWriteFailingHalfwayLeavesNoPartOfThePerson) {
    // A link table without its resource column: the person and the
    // resource are written before the link fails.
    Exec("Drop Table ResourcesOwners");
    Exec("Create Table ResourcesOwners ([Owner ID] Long, [OwnerType] Long)");
    auto before = Everything();
    book_.rProject = "A";
    std::string mail = "Half <half@example.org>";
    book_.AddPersonbyStrMail(mail);
    EXPECT_EQ(Everything(), before);
    // Without an address the link is not needed, and the person is written.
    std::string nameOnly = "Whole";
    book_.AddPersonbyStrMail(nameOnly);
    EXPECT_EQ(Rows("Select FullName From PersonalData Where [Personal ID]>4"), (std::vector<std::string>{"Whole"}));
}

TEST_F(PersonIntakeTest, DeletingAMissingPersonSaysSoAndChangesNothing) {
    auto before = Everything();
    book_.DeletePerson(99);
    book_.DeletePerson(0);
    EXPECT_EQ(Everything(), before);
    ASSERT_EQ(Messages().size(), 2u);
    EXPECT_EQ(Messages()[0].prompt, "Person number 99 is not found!");
    EXPECT_EQ(Messages()[0].buttons, ui::vbCritical);
    EXPECT_EQ(Messages()[1].prompt, "Person number 0 is not found!");
}

TEST_F(PersonIntakeTest, DeletingAnEmployeeWithSharedResourcesAndPhotosLeavesNoOrphansAndTakesNothingOfOthers) {
    // Person 1 has the resources 1, 2 and 4 of its own. Add: resource 5
    // shared with person 2, resource 6 shared with organization 1, resource
    // 7 linked with a Null owner type; two jobs, two photos, a project row
    // of organization 1 (the same number, another owner) and an address.
    Exec("Insert Into Resources (ResourceString, ResourceType) Values (\"shared@example.org\", 2)");
    Exec("Insert Into Resources (ResourceString, ResourceType) Values (\"+7 000\", 0)");
    Exec("Insert Into Resources (ResourceString, ResourceType) Values (\"old@example.org\", 2)");
    for (const char* link : {"5, 1, 0", "5, 2, 0", "6, 1, 0", "6, 1, 1", "7, 1, Null"})
        Exec(std::string("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (") + link + ")");
    Exec("Insert Into Employees ([Job ID], [Personal ID], [Room ID]) Values (1, 1, 0)");
    Exec("Insert Into Employees ([Job ID], [Personal ID], [Room ID]) Values (2, 1, 0)");
    Exec("Insert Into Employees ([Job ID], [Personal ID], [Room ID]) Values (2, 2, 0)");
    Exec("Insert Into Photo ([Personal ID]) Values (1)");
    Exec("Insert Into Photo ([Personal ID]) Values (1)");
    Exec("Insert Into Photo ([Personal ID]) Values (2)");
    Exec("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (1, 1, \"A\", False)");
    Exec("Insert Into AddressesOwners ([Address ID], [Owner ID], OwnerType) Values (3, 1, 0)");

    book_.DeletePerson(1);

    EXPECT_TRUE(Messages().empty());
    EXPECT_EQ(Column("Select [Personal ID] From PersonalData"), (std::set<int>{2, 3, 4}));
    // The person's own resources went; the shared ones stay for the others.
    EXPECT_EQ(Column("Select [Resource ID] From Resources"), (std::set<int>{3, 5, 6}));
    EXPECT_EQ(Rows("Select [Resource ID], [Owner ID], OwnerType From ResourcesOwners Order By [Resource ID]"),
              (std::vector<std::string>{"3|2|0", "5|2|0", "6|1|1"}));
    // The jobs are vacancies now; the other person's job is untouched.
    EXPECT_EQ(Rows("Select [Job ID], [Personal ID] From Employees Order By [Employee ID]"),
              (std::vector<std::string>{"1|0", "2|0", "2|2"}));
    EXPECT_EQ(Column("Select [Personal ID] From Photo"), (std::set<int>{2}));
    EXPECT_EQ(Rows("Select [Owner ID], OwnerType, Project From Projects Order By [Owner ID], OwnerType"),
              (std::vector<std::string>{"1|1|A", "2|0|AB", "4|0|Old"}));
    // The address binding is the address window's to remove.
    EXPECT_EQ(Rows("Select [Owner ID] From AddressesOwners").size(), 1u);

    // Deleting the same number again is a missing person.
    book_.DeletePerson(1);
    ASSERT_EQ(Messages().size(), 1u);
    EXPECT_EQ(Messages()[0].prompt, "Person number 1 is not found!");
}

TEST_F(PersonIntakeTest, ADeletionFailingHalfwayLeavesThePersonWhole) {
    // Without a Photo table the last step fails, after the resources,
    // the jobs and the project rows were taken: all of it comes back.
    Exec("Insert Into Employees ([Job ID], [Personal ID], [Room ID]) Values (1, 1, 0)");
    Exec("Drop Table Photo");
    auto before = Everything({"PersonalData", "Resources", "ResourcesOwners", "Projects", "Employees"});
    book_.DeletePerson(1);
    EXPECT_EQ(Everything({"PersonalData", "Resources", "ResourcesOwners", "Projects", "Employees"}), before);
    EXPECT_TRUE(Messages().empty());
}

TEST_F(PersonIntakeTest, APersonAddedFromAMailStringGoesWithoutATrace) {
    auto before = Everything();
    book_.rProject = "A";
    std::string mail = "Transient <t@example.org>";
    book_.AddPersonbyStrMail(mail);
    auto ids = Column("Select [Personal ID] From PersonalData");
    book_.DeletePerson(*ids.rbegin());
    EXPECT_EQ(Everything(), before);
}

}  // namespace
}  // namespace zelvo::testing
