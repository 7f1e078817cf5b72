// zelvo call AddPersonbyStrMail and DeletePerson, run as
// programs on a book made by CorrectDB, read back through zelvo sql.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/cli_runner.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

class CliPersonsTest : public ::testing::Test {
protected:
    std::string app() const { return dir_.File("app"); }
    Outcome Zelvo(const std::vector<std::string>& args) { return RunZelvo(args, dir_.File("stderr.txt")); }
    std::string Sql(const std::string& statement) {
        Outcome r = Zelvo({"--app-path", app(), "sql", "--json", statement});
        EXPECT_EQ(r.status, 0) << statement << "\n" << r.err;
        return r.out;
    }
    void SetUp() override {
        Outcome r = Zelvo({"--app-path", app(), "call", "CorrectDB", ""});
        ASSERT_EQ(r.status, 0) << r.err;
    }
    TempDir dir_;
};

TEST_F(CliPersonsTest, APastedSenderComesInWithItsAddressAndGoesOutWithoutATrace) {
    const std::string mail = "\"Иванов, Иван\" <ivan@example.org>";
    Outcome r = Zelvo({"--app-path", app(), "call", "AddPersonbyStrMail", mail, "--set", "rProject=Inbox"});
    ASSERT_EQ(r.status, 0) << r.err;
    // The by-reference text comes back as it was given.
    EXPECT_NE(r.out.find("\"strMail\": \"\\\"Иванов, Иван\\\" <ivan@example.org>\""), std::string::npos) << r.out;

    EXPECT_NE(Sql("Select [Personal ID], FullName From PersonalData").find("[1, \"Иванов, Иван\"]"),
              std::string::npos);
    EXPECT_NE(Sql("Select ResourceString, ResourceType From Resources").find("[\"ivan@example.org\", 2]"),
              std::string::npos);
    EXPECT_NE(Sql("Select [Owner ID], OwnerType From ResourcesOwners").find("[1, 0]"), std::string::npos);
    EXPECT_NE(Sql("Select [Owner ID], Project From Projects").find("[1, \"Inbox\"]"), std::string::npos);

    r = Zelvo({"--app-path", app(), "call", "DeletePerson", "1"});
    ASSERT_EQ(r.status, 0) << r.err;
    for (const char* table : {"PersonalData", "Resources", "ResourcesOwners", "Projects"})
        EXPECT_NE(Sql(std::string("Select Count(*) From ") + table).find("[[0]]"), std::string::npos) << table;

    // Once more: the person is not there, and the call says so.
    r = Zelvo({"--app-path", app(), "call", "DeletePerson", "1"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE((r.out + r.err).find("Person number 1 is not found!"), std::string::npos) << r.out << r.err;
}

}  // namespace
}  // namespace zelvo::testing
