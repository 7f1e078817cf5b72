// zelvo correct-db and zelvo compact, run as a person runs them.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "old_layout_books.h"
#include "platform/dao/dbengine.h"
#include "platform/shell/file_system.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

struct Result {
    int status;
    std::string out;
};

Result Zelvo(const std::string& args) {
    std::string command = std::string(ZELVO_BIN_DIR) + "/zelvo " + args + " 2>&1";
    FILE* p = popen(command.c_str(), "r");
    Result r{-1, {}};
    if (!p) return r;
    char buf[4096];
    size_t n;
    while ((n = fread(buf, 1, sizeof buf, p)) > 0) r.out.append(buf, n);
    int status = pclose(p);
    r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return r;
}

TEST(StoreCommands, CorrectDbMakesABookThatSqlCanList) {
    TempDir dir;
    std::string app = dir.path().string();
    Result made = Zelvo("correct-db --app-path " + app);
    ASSERT_EQ(made.status, 0) << made.out;
    Result tables = Zelvo("sql --db " + app + "/AddressBookW.mdb --tables");
    ASSERT_EQ(tables.status, 0) << tables.out;
    for (const char* t : {"PersonalData", "Organizations", "ResourcesOwners", "PhoneTypes", "OrgPrj", "PersPrj"})
        EXPECT_NE(tables.out.find(t), std::string::npos) << t << "\n" << tables.out;
}

TEST(StoreCommands, CompactShowsItsStepsAndKeepsABackup) {
    TempDir dir;
    std::string app = dir.path().string();
    Result none = Zelvo("compact --app-path " + app);
    EXPECT_EQ(none.status, 1);
    EXPECT_NE(none.out.find("there is no book"), std::string::npos) << none.out;

    ASSERT_EQ(Zelvo("correct-db --app-path " + app).status, 0);
    Result done = Zelvo("compact --app-path " + app);
    EXPECT_EQ(done.status, 0) << done.out;
    EXPECT_NE(done.out.find("Creating a database backup ...\nPreparations for the compression of the base ...\n"
                            "Compression base ...\nRemoving old copies ...\nMoving the base ...\n"),
              std::string::npos)
        << done.out;
    EXPECT_TRUE(shell::FileExists(app + "/~AddressBookW.mdb"));
}

TEST(StoreCommands, CorrectDbTurnsAGenuineJetBookIntoABook) {
    const std::string jet = std::string(ZELVO_SHARED_DATA) + "/jet/";
    if (!std::filesystem::exists(jet + "nwind.mdb")) GTEST_SKIP() << "no Jet files at " << jet;
    struct Case {
        const char* file;
        const char* count;
        const char* rows;
    };
    for (const Case& c : {Case{"nwind.mdb", "Select Count(*) As N From [Umsätze]", "830"},
                          Case{"DateTestDatabase.mdb", "Select Count(*) As N From DateTest", "6"}}) {
        SCOPED_TRACE(c.file);
        TempDir dir;
        std::string app = dir.path().string();
        std::filesystem::copy_file(jet + c.file, app + "/AddressBook.mdb");
        Result made = Zelvo("correct-db --app-path " + app);
        ASSERT_EQ(made.status, 0) << made.out;
        Result tables = Zelvo("sql --db " + app + "/AddressBookW.mdb --tables");
        for (const char* t : {"PersonalData", "ResourcesOwners", "PhoneTypes", "OrgPrj", "PersPrj"})
            EXPECT_NE(tables.out.find(t), std::string::npos) << t << "\n" << tables.out;
        Result count = Zelvo("sql --db " + app + "/AddressBookW.mdb '" + c.count + "'");
        EXPECT_NE(count.out.find(std::string("\n") + c.rows), std::string::npos) << count.out;
    }
}

// A book that still stands for Jet 3 is compacted in place, with its backup.
TEST(StoreCommands, CorrectDbCompactsABookThatStandsForJet3) {
    TempDir dir;
    std::string app = dir.path().string();
    dao::Engine().CreateDatabase(app + "/AddressBookW.mdb", {}, dao::dbVersion30).Close();
    Result made = Zelvo("correct-db --app-path " + app);
    ASSERT_EQ(made.status, 0) << made.out;
    EXPECT_NE(made.out.find("Compression base ..."), std::string::npos) << made.out;
    EXPECT_TRUE(shell::FileExists(app + "/~AddressBookW.mdb"));
    EXPECT_EQ(dao::Engine().OpenDatabase(app + "/AddressBookW.mdb").Version(), "4.0");
}

TEST(StoreCommands, CorrectDbConvertsBooksOfTheOldLayouts) {
    for (unsigned traits : {unsigned{kOldEmails | kOldProjects | kOldOrganizations}, unsigned{kOldEmails}}) {
        SCOPED_TRACE(traits);
        TempDir dir;
        std::string app = dir.path().string();
        if (traits == (kOldEmails | kOldProjects | kOldOrganizations)) CreateEarliestBook(app + "/AddressBookW.mdb");
        else CreatePartlyOldBook(app + "/AddressBookW.mdb", traits);
        Result made = Zelvo("correct-db --app-path " + app);
        ASSERT_EQ(made.status, 0) << made.out;
        Result owners = Zelvo("sql --db " + app +
                              "/AddressBookW.mdb 'Select ResourceString, [Owner ID] From Resources Inner Join "
                              "ResourcesOwners On Resources.[Resource ID] = ResourcesOwners.[Resource ID] "
                              "Where ResourceType = 2 Order By ResourceString'");
        EXPECT_NE(owners.out.find("(3 rows)"), std::string::npos) << owners.out;
        EXPECT_NE(owners.out.find("bob@c.org"), std::string::npos) << owners.out;
        Result tables = Zelvo("sql --db " + app + "/AddressBookW.mdb --tables");
        EXPECT_EQ(tables.out.find("E-MailAdresses"), std::string::npos) << tables.out;
    }
}

TEST(StoreCommands, BadUsageSaysWhy) {
    Result r = Zelvo("compact --bogus");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.out.find("unexpected argument '--bogus'"), std::string::npos) << r.out;
}

}  // namespace
}  // namespace zelvo::testing
