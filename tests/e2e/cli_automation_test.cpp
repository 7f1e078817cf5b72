// zelvo call and zelvo list, run as programs over a book filled through
// zelvo sql.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/cli_runner.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

class CliTest : public ::testing::Test {
protected:
    std::string app() const { return dir_.File("app"); }

    Outcome Zelvo(const std::vector<std::string>& args) { return RunZelvo(args, dir_.File("stderr.txt")); }

    void Sql(const std::string& statement) {
        // The application folder names the book, as for the other commands.
        Outcome r = Zelvo({"--app-path", app(), "sql", statement});
        ASSERT_EQ(r.status, 0) << statement << "\n" << r.err;
    }

    // A book made by CorrectDB through the automation object, filled by SQL:
    //   1 Иванов Иван "A\B" (two addresses)  2 Petrov "A\B"   3 Smith "AB"
    //   4 Parent "A"   5 Old Timer archived "A\B"   6 Loner no project
    void MakeBook() {
        Outcome r = Zelvo({"--app-path", app(), "call", "CorrectDB", ""});
        ASSERT_EQ(r.status, 0) << r.err;
        ASSERT_NE(r.out.find("\"byref\": {\"Path\": \"" + app() + "/AddressBookW.mdb\"}"), std::string::npos) << r.out;
        for (const char* person : {"\"Иванов\", \"Иванов Иван\"", "\"Petrov\", \"\"", "\"Smith\", \"Smith\"",
                                   "\"Parent\", \"Parent\"", "\"Old\", \"Old Timer\"", "\"Loner\", \"Loner\""})
            Sql(std::string("Insert Into PersonalData (FirstName, FullName) Values (") + person + ")");
        const char* memberships[][3] = {{"1", "A\\B", "False"}, {"2", "A\\B", "False"}, {"3", "AB", "False"},
                                        {"4", "A", "False"},    {"5", "A\\B", "True"}};
        for (auto& m : memberships)
            Sql(std::string("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (") + m[0] +
                ", 0, \"" + m[1] + "\", " + m[2] + ")");
        const char* mails[][2] = {{"1", "ivan@example.org"}, {"1", "second@example.org"}, {"3", "smith@example.com"}};
        int id = 0;
        for (auto& m : mails) {
            Sql(std::string("Insert Into Resources (ResourceString, ResourceType) Values (\"") + m[1] + "\", 2)");
            Sql("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (" + std::to_string(++id) +
                ", " + m[0] + ", 0)");
        }
    }

    TempDir dir_;
};

size_t Count(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

TEST_F(CliTest, NavigateListsExactlyTheProjectsMembersWithTheirFirstAddress) {
    MakeBook();
    Outcome r = Zelvo({"call", "Navigate", "--set", "rProject=A\\B", "--app-path", app()});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(Count(r.out, "\"tag\":"), 2u) << r.out;
    EXPECT_NE(r.out.find("{\"tag\": 1, \"text\": \"Иванов Иван\", \"icon\": \"User\", \"smallIcon\": \"User\", "
                         "\"subItems\": [\" Man\", \"ivan@example.org\"]}"),
              std::string::npos)
        << r.out;
    EXPECT_NE(r.out.find("{\"tag\": 2, \"text\": \"Petrov  \", \"icon\": \"User\", \"smallIcon\": \"User\", "
                         "\"subItems\": [\" Man\", \"\"]}"),
              std::string::npos)
        << r.out;
    EXPECT_EQ(r.out.find("second@example.org"), std::string::npos);
    EXPECT_NE(r.out.find("\"result\": null"), std::string::npos);

    // The archive side of the same path, and the persons of no project.
    r = Zelvo({"--app-path", app(), "call", "Navigate", "--set", "rProject=A\\B", "--set", "InsArcPrj=True"});
    EXPECT_EQ(Count(r.out, "\"tag\":"), 1u);
    EXPECT_NE(r.out.find("\"tag\": 5"), std::string::npos);
    r = Zelvo({"--app-path", app(), "call", "Navigate", "--set", "Flags=1"});
    EXPECT_EQ(Count(r.out, "\"tag\":"), 1u);
    EXPECT_NE(r.out.find("\"tag\": 6"), std::string::npos);
    // The optional Icon is the first value argument.
    r = Zelvo({"--app-path", app(), "call", "Navigate", "Person", "--set", "rProject=AB"});
    EXPECT_NE(r.out.find("\"icon\": \"Person\""), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"byref\": {\"Icon\": \"Person\"}"), std::string::npos) << r.out;
}

TEST_F(CliTest, ListShowsAFilterSortedByName) {
    MakeBook();
    Outcome r = Zelvo({"--app-path", app(), "list", "--project", "A\\B", "--emails"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "Members of project A\\B (" + app() + "/AddressBookW.mdb):\n"
                     "2  Petrov  \n"
                     "1  Иванов Иван  ivan@example.org\n"
                     "(2 persons)\n");
    r = Zelvo({"--app-path", app(), "list", "--all", "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(Count(r.out, "\"tag\":"), 4u) << r.out;  // 1, 2, 3, 4: each once
    EXPECT_NE(r.out.find("\"filter\": \"AllPersons\""), std::string::npos);
    r = Zelvo({"list", "--app-path", app()});
    EXPECT_NE(r.out.find("6  Loner"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("(1 person)"), std::string::npos);
}

TEST_F(CliTest, BadUsageIsStatusTwoWithOneLineReason) {
    struct Case {
        std::vector<std::string> args;
        std::string reason;
    } cases[] = {
        {{"call"}, "no member given"},
        {{"call", "Nope"}, "has no member 'Nope'"},
        {{"call", "CorrectDB"}, "Argument not optional"},
        {{"call", "GetDatabasename", "extra"}, "takes 0 arguments"},
        {{"call", "Navigate", "--set", "Flags=many"}, "'many' is no Long"},
        {{"call", "Navigate", "--set", "Colour=red"}, "no property 'Colour'"},
        {{"call", "Navigate", "--set", "rProject"}, "PROPERTY=VALUE"},
        {{"list", "--all", "--unsorted"}, "exclude each other"},
        {{"list", "--archive"}, "--archive goes with"},
        {{"list", "--project"}, "needs a value"},
        {{"--answer"}, "needs a value"},
    };
    for (const auto& c : cases) {
        Outcome r = Zelvo(c.args);
        EXPECT_EQ(r.status, 2) << c.args[0] << " " << r.err;
        EXPECT_NE(r.err.find(c.reason), std::string::npos) << r.err;
        EXPECT_EQ(r.out, "");
    }
}

TEST_F(CliTest, AMissingBookIsAFailureWithAClearMessage) {
    Outcome r = Zelvo({"--app-path", app(), "list"});
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("there is no address book at " + app() + "/AddressBookW.mdb"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("zelvo correct-db"), std::string::npos);
    r = Zelvo({"--app-path", app(), "call", "Navigate"});
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("zelvo.dll\\cAddressbook\\Navigate: error 3024"), std::string::npos) << r.err;
}

// The host's options stand before any command, also one without a book.
TEST_F(CliTest, TheHostsOptionsComeBeforeEveryCommand) {
    const std::string ppm = dir_.File("dot.ppm"), vcf = dir_.File("one.vcf");
    std::ofstream(ppm, std::ios::binary) << std::string("P6\n1 1\n255\n\x10\x20\x30", 14);
    std::ofstream(vcf) << "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ada\r\nN:;Ada;;;\r\nEND:VCARD\r\n";
    Outcome r = Zelvo({"--app-path", app(), "jpeg", ppm, dir_.File("dot.jpg")});
    EXPECT_EQ(r.status, 0) << r.err;
    r = Zelvo({"--app-path", app(), "vcard", "show", vcf});
    EXPECT_EQ(r.status, 0) << r.err;
    r = Zelvo({"--app-path", app(), "correct-db"});
    EXPECT_EQ(r.status, 0) << r.err;
    r = Zelvo({"--app-path", app(), "sql", "Select Count(*) From PersonalData"});
    EXPECT_EQ(r.status, 0) << r.err;
}

TEST_F(CliTest, HelpNamesTheCommandsAndTheMembers) {
    Outcome r = Zelvo({"--help"});
    EXPECT_EQ(r.status, 0);
    for (const char* word : {"call", "list", "correct-db", "--app-path", "--answer"})
        EXPECT_NE(r.out.find(word), std::string::npos) << word;
    r = Zelvo({"call", "--help"});
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("--set NAME=VALUE"), std::string::npos);
    r = Zelvo({"call", "--members"});
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("Navigate(ByRef Listview1 As Object, ByRef DataPersonal As Object, Optional ByRef DataEmail "
                         "As Object, Optional ByRef Icon As Variant = \"User\")"),
              std::string::npos)
        << r.out;
    r = Zelvo({"list", "--help"});
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("--unsorted"), std::string::npos);
}

// The folder events and the archive from the command line, seen through
// zelvo projects: the by-reference flag comes back, the rows follow.
TEST_F(CliTest, ProjectMembersChangeTheRowsThatProjectsLists) {
    MakeBook();
    Outcome r = Zelvo({"--app-path", app(), "call", "PrjArcPrj2", "3", "0", "False"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\"InsArcPrj\": true"), std::string::npos) << r.out;
    r = Zelvo({"--app-path", app(), "call", "rProjectMoved", "a", "False", "Done\\A", "True"});
    ASSERT_EQ(r.status, 0) << r.err;
    r = Zelvo({"--app-path", app(), "projects", "--archive", "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("{\"project\": \"AB\", \"persons\": 1,"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("{\"project\": \"Done\\\\A\\\\B\", \"persons\": 2,"), std::string::npos) << r.out;
    r = Zelvo({"--app-path", app(), "projects", "ls", "done", "--deep", "--archive"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("Иванов Иван  [Done\\A\\B]"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("(3 objects)"), std::string::npos) << r.out;
}


// Units made through the automation member, seen by zelvo org, Navigate and
// list; taken out of no project, an organization is deleted with its units.
TEST_F(CliTest, OfficeUnitsMadeByCallShowInOrgTreeAndGoWithTheirOrganization) {
    MakeBook();
    Outcome r = Zelvo({"--app-path", app(), "--answer", "Acme", "call", "AddNewOfficeObject", "0", "5"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\"result\": \"Acme\""), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"byref\": {\"Parent_ID\": 0"), std::string::npos) << r.out;
    r = Zelvo({"--app-path", app(), "--answer", "?", "call", "AddNewOfficeObject", "1", "1", "", "0", "A\\B"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\"Icon\": \"SubDiv\", \"Organization_ID\": 2"), std::string::npos) << r.out;
    Sql("Insert Into JobTitles ([Organization ID], JobTitle) Values (2, \"Clerk\")");
    Sql("Insert Into Employees ([Job ID], [Personal ID]) Values (1, 6)");

    r = Zelvo({"--app-path", app(), "org", "tree"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out,
              "Acme  #1\n  Organization with no name  #2\n    - Clerk  (job #1)\n        Loner  (employee #1, person #6)\n"
              "(2 units)\n");
    r = Zelvo({"--app-path", app(), "call", "Navigate", "--set", "rProject=A\\B"});
    EXPECT_NE(r.out.find("\"tag\": 2, \"text\": \"\", \"icon\": \"SubDiv\""), std::string::npos) << r.out;

    r = Zelvo({"--app-path", app(), "call", "DeleteObjfromPrj", "", "False", "1", "1"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\"result\": true"), std::string::npos) << r.out;
    r = Zelvo({"--app-path", app(), "org", "tree", "--json"});
    EXPECT_EQ(r.out, "{\"units\": []}\n");
    r = Zelvo({"--app-path", app(), "list", "--project", "A\\B"});
    EXPECT_NE(r.out.find("(2 persons)"), std::string::npos) << r.out;  // the person stays, the units are gone
    EXPECT_EQ(Zelvo({"--app-path", app(), "org", "rooms", "x"}).status, 2);
}

}  // namespace
}  // namespace zelvo::testing
