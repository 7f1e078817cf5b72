// CorrectDB cut off: a failure or a kill at any step of a conversion leaves
// the book as it was or converted, and the next run finishes the work; books
// that carry only some of the old traits convert as well.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <thread>

#include "platform/core/error.h"
#include "platform/shell/file_system.h"
#include "old_layout_books.h"
#include "store/correct_db.h"
#include "store_test_util.h"

namespace zelvo::testing {
namespace {

using namespace zelvo::dao;

// Everything a person could find in the book: its schema and every row of
// every table it has.
std::string BookState(const std::string& path) {
    if (!shell::FileExists(path)) return "no book";
    Database db = Engine().OpenDatabase(path);
    std::string out = SchemaText(db);
    TableDefs tables = db.TableDefs();
    std::vector<std::string> names;
    for (int i = 0; i < tables.Count(); ++i) names.push_back(tables.Item(i).Name());
    for (const std::string& t : names) out += t + ": " + RowsText(db, "Select * From [" + t + "]") + "\n";
    db.Close();
    return out;
}

void RemoveBook(const std::string& path) {
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) std::filesystem::remove(path + suffix);
}

// The state of `template` once corrected, worked out on a copy elsewhere.
std::string CorrectedState(const std::string& templateBook, const std::string& scratch) {
    RemoveBook(scratch);
    std::filesystem::copy_file(templateBook, scratch);
    std::string path = scratch;
    CorrectDB(path);
    return BookState(scratch);
}

const CorrectStep kAllSteps[] = {CorrectStep::Convert,   CorrectStep::Converted,       CorrectStep::Stages,
                                 CorrectStep::ResourcesRenamed, CorrectStep::Row,     CorrectStep::Columns,
                                 CorrectStep::OldOrganizations, CorrectStep::Queries, CorrectStep::Commit,
                                 CorrectStep::Committed, CorrectStep::Hidden};

class CorrectDbKillTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        templateBook_ = dir_.File("template.mdb");
        CreateEarliestBook(templateBook_);
        before_ = BookState(templateBook_);
        after_ = CorrectedState(templateBook_, dir_.File("scratch.mdb"));
        ASSERT_NE(before_, after_);
    }

    // The earliest book at the book's place, or as "AddressBook.mdb" beside
    // no book when `asSource`.
    void PutOldBook(bool asSource) {
        RemoveBook(book());
        RemoveBook(InApp("AddressBook.mdb"));
        std::filesystem::copy_file(templateBook_, asSource ? InApp("AddressBook.mdb") : book());
    }

    // The book is as it was before the run or fully converted; then a run
    // finishes the conversion.
    void ExpectBeforeOrAfterThenFinished(bool asSource) {
        std::string state = BookState(book());
        bool noBookYet = asSource && state == "no book";
        EXPECT_TRUE(noBookYet || state == before_ || state == after_) << state;
        std::string path = book();
        CorrectDB(path);
        EXPECT_EQ(BookState(book()), after_);
        if (asSource) {
            EXPECT_EQ(BookState(InApp("AddressBook.mdb")), before_);
        }
    }

    std::string templateBook_, before_, after_;
};

TEST_F(CorrectDbKillTest, FailureAtAnyStepIsReportedAndUndone) {
    for (bool asSource : {false, true}) {
        for (CorrectStep failing : kAllSteps) {
            SCOPED_TRACE(std::string(asSource ? "source " : "book ") + std::to_string(static_cast<int>(failing)));
            PutOldBook(asSource);
            auto previous = SetCorrectFaultHook([failing](CorrectStep step) {
                if (step == failing) throw Error(61, "Disk full");
            });
            int reports = Reports();
            std::string path = book();
            CorrectDB(path);
            SetCorrectFaultHook(previous);
            // With the book in place there is nothing to copy: those steps
            // never come.
            bool reached = asSource || (failing != CorrectStep::Convert && failing != CorrectStep::Converted);
            EXPECT_EQ(Reports(), reports + (reached ? 1 : 0));
            // A failure before the commit undoes the run; after it, the
            // conversion stands.
            std::string state = BookState(book());
            if (!reached || failing >= CorrectStep::Committed) EXPECT_EQ(state, after_);
            else if (failing <= CorrectStep::Converted) EXPECT_EQ(state, "no book");
            else EXPECT_EQ(state, before_);
            ExpectBeforeOrAfterThenFinished(asSource);
        }
    }
}

// Runs CorrectDB in a child process that dies at `step` without any
// clean-up, as a killed process would.
void CorrectAndDieAt(CorrectStep step) {
    pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        SetCorrectFaultHook([step](CorrectStep now) {
            if (now == step) _exit(0);
        });
        std::string path;
        CorrectDB(path);
        _exit(0);
    }
    int status = 0;
    waitpid(pid, &status, 0);
}

TEST_F(CorrectDbKillTest, KilledAtEveryStepLeavesTheBookBeforeOrAfter) {
    for (bool asSource : {false, true}) {
        for (CorrectStep step : kAllSteps) {
            SCOPED_TRACE(std::string(asSource ? "source " : "book ") + std::to_string(static_cast<int>(step)));
            PutOldBook(asSource);
            CorrectAndDieAt(step);
            ExpectBeforeOrAfterThenFinished(asSource);
        }
    }
}

TEST_F(CorrectDbKillTest, KilledAtRandomMomentsLeavesTheBookBeforeOrAfter) {
    // A larger earliest book, so that kills fall inside its conversion.
    {
        Database db = Engine().OpenDatabase(templateBook_);
        for (int i = 0; i < 8; ++i) {
            db.Execute("Insert Into [E-MailAdresses] ([E-mailAdress], [Personal ID]) "
                       "Select [E-mailAdress], [Personal ID] From [E-MailAdresses]");
            db.Execute("Insert Into Projects ([Personal ID], Project, InsArcPrj) "
                       "Select [Personal ID], Project, InsArcPrj From Projects");
        }
        db.Close();
    }
    before_ = BookState(templateBook_);
    after_ = CorrectedState(templateBook_, dir_.File("scratch.mdb"));

    PutOldBook(false);
    auto t0 = std::chrono::steady_clock::now();
    std::string path = book();
    CorrectDB(path);
    auto one = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - t0);
    std::uniform_int_distribution<long> delay(0, one.count() + 1000);
    std::mt19937 gen(42);
    int midway = 0;  // rounds killed with the book still as it was
    for (int round = 0; round < 25; ++round) {
        SCOPED_TRACE(round);
        PutOldBook(false);
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            std::string p = book();
            CorrectDB(p);
            _exit(0);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(delay(gen)));
        kill(pid, SIGKILL);
        int status = 0;
        waitpid(pid, &status, 0);
        midway += WIFSIGNALED(status) && BookState(book()) == before_;
        ExpectBeforeOrAfterThenFinished(false);
    }
    EXPECT_GT(midway, 0) << "no kill fell inside a conversion; the test proves nothing";
}

// A book of today's layout with one old trait converts as the earliest book
// does: the same schema, and the rows of that trait moved.
TEST_F(CorrectDbKillTest, BooksWithOnlySomeOldTraitsConvert) {
    std::string fresh;
    {
        std::string p = dir_.File("fresh.mdb");
        CorrectDB(p);
        fresh = SchemaText(Engine().OpenDatabase(p), true);
    }
    struct Case {
        const char* name;
        unsigned traits;
        const char* sql;
        const char* rows;
    };
    const Case cases[] = {
        {"old e-mail table", kOldEmails,
         "Select ResourceString, ResourceType, [Owner ID], OwnerType From Resources Inner Join ResourcesOwners "
         "On Resources.[Resource ID] = ResourcesOwners.[Resource ID] Order By ResourceString",
         "ada@a.org|2|1|0;ada@b.org|2|1|0;bob@c.org|2|2|0"},
        {"old projects", kOldProjects, "Select [Owner ID], OwnerType, Project From Projects Order By [Owner ID]",
         "1|0|A;2|0|A\\B;3|0|Old"},
        {"old organizations", kOldOrganizations,
         "Select Organization, Employees.[Personal ID] From (Organizations Inner Join JobTitles "
         "On Organizations.[Organization ID] = JobTitles.[Organization ID]) Inner Join Employees "
         "On JobTitles.[Job ID] = Employees.[Job ID] Order By Organization",
         "Acme|1;Globex|3"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RemoveBook(book());
        CreatePartlyOldBook(book(), c.traits);
        std::string path = book();
        CorrectDB(path);
        {
            Database db = Engine().OpenDatabase(book());
            EXPECT_EQ(SchemaText(db, true), fresh);
            EXPECT_EQ(RowsText(db, c.sql), c.rows);
            db.Close();
        }
        std::string once = BookState(book());
        CorrectDB(path);
        EXPECT_EQ(BookState(book()), once);
    }
}

}  // namespace
}  // namespace zelvo::testing
