// zelvo person, run as a program: a person added from an address, shown as
// the address book window shows it, and deleted.
#include <gtest/gtest.h>

#include "support/cli_runner.h"
#include "support/json_check.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

bool Has(const std::string& text, const std::string& what) { return text.find(what) != std::string::npos; }

class CliPersonTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(Z({"correct-db"}).status, 0); }
    Outcome Z(std::vector<std::string> args) {
        args.insert(args.begin(), {"--app-path", dir_.File("app")});
        return RunZelvo(args, dir_.File("stderr.txt"));
    }
    void Sql(const std::string& statement) { ASSERT_EQ(Z({"sql", statement}).status, 0) << statement; }
    TempDir dir_;
};

TEST_F(CliPersonTest, ShowGivesTheSummaryTheWindowShows) {
    Sql("Insert Into PersonalData (FirstName, SurName, FullName) Values (\"Anna\", \"Smith\", \"Anna Smith\")");
    Sql("Insert Into Resources (ResourceString, ResourceType) Values (\"anna@example.org\", 2)");
    Sql("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (1, 1, 0)");
    Sql("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (1, 0, \"Clients\", False)");
    Sql("Insert Into PostAddresses ([aParent ID], aType, Address, PostIndex) Values (0, 0, \"Russia\", \"101\")");
    Sql("Insert Into PostAddresses ([aParent ID], aType, Address) Values (1, 2, \"Moscow\")");
    Sql("Insert Into AddressesOwners ([Address ID], [Owner ID], OwnerType) Values (2, 1, 0)");
    Sql("Insert Into Organizations (Organization, [Parent ID]) Values (\"Acme\", 0)");
    Sql("Insert Into JobTitles ([Organization ID], JobTitle) Values (1, \"Engineer\")");
    Sql("Insert Into Employees ([Job ID], [Personal ID], [Room ID]) Values (1, 1, 0)");

    Outcome r = Z({"person", "show", "1", "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(JsonCheck::IsValid(r.out)) << r.out;
    EXPECT_EQ(r.out,
              "{\"id\": 1, \"name\": \"Anna Smith\", \"address\": \"101, Russia, Moscow\", \"homePhones\": \"\", "
              "\"job\": \"Acme, Engineer\", \"workPhones\": \"\", \"emails\": [\"anna@example.org\"], \"webs\": [], "
              "\"projects\": [{\"project\": \"Clients\", \"archive\": false}], \"photo\": null}\n");

    r = Z({"person", "show", "1"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(Has(r.out, "Person 1: Anna Smith\n")) << r.out;
    EXPECT_TRUE(Has(r.out, "Job:         Acme, Engineer\n")) << r.out;
    EXPECT_TRUE(Has(r.out, "E-mail:      anna@example.org\n")) << r.out;
    EXPECT_TRUE(Has(r.out, "Photo:       none\n")) << r.out;

    r = Z({"person", "show", "2"});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(Has(r.err, "there is no person 2")) << r.err;
}

TEST_F(CliPersonTest, APersonAddedFromAnAddressIsShownAndDeleted) {
    Outcome r = Z({"person", "add", "Anna Smith <anna@example.org>", "--project", "Clients"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "1\n");
    r = Z({"person", "show", "1", "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(Has(r.out, "\"emails\": [\"anna@example.org\"]")) << r.out;
    EXPECT_TRUE(Has(r.out, "\"projects\": [{\"project\": \"Clients\", \"archive\": false}]")) << r.out;
    EXPECT_TRUE(Has(r.out, "Anna")) << r.out;

    r = Z({"person", "rm", "1"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "deleted person 1\n");
    r = Z({"person", "show", "1"});
    EXPECT_EQ(r.status, 1);
    r = Z({"person", "rm", "1"});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(Has(r.err, "there is no person 1")) << r.err;
    // The address went with her.
    r = Z({"sql", "Select Count(*) From Resources"});
    EXPECT_TRUE(Has(r.out, "\n0\n")) << r.out;
}

TEST_F(CliPersonTest, BadUsageSaysWhatIsWrong) {
    struct Case {
        std::vector<std::string> args;
        const char* reason;
    } cases[] = {
        {{"person"}, "say add, show or rm"},
        {{"person", "edit", "1"}, "unknown action 'edit'"},
        {{"person", "show", "x"}, "not 'x'"},
        {{"person", "show", "0"}, "not '0'"},
        {{"person", "rm", "1", "--project", "A"}, "--project and --archive go with add"},
        {{"person", "add"}, "add takes one ADDRESS"},
        {{"person", "add", "a@b", "--archive"}, "--archive goes with --project"},
        {{"person", "show", "1", "--deep"}, "unknown option '--deep'"},
    };
    for (const Case& c : cases) {
        Outcome r = Z(c.args);
        EXPECT_EQ(r.status, 2) << c.reason;
        EXPECT_TRUE(Has(r.err, c.reason)) << r.err;
    }
    Outcome help = Z({"person", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(Has(help.out, "zelvo person add ADDRESS")) << help.out;
}

TEST_F(CliPersonTest, WithoutABookItSaysHowToMakeOne) {
    Outcome r = RunZelvo({"--app-path", dir_.File("none"), "person", "show", "1"}, dir_.File("stderr.txt"));
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(Has(r.err, "there is no address book")) << r.err;
}

}  // namespace
}  // namespace zelvo::testing
