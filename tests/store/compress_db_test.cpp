// CompressDB: the three files, the progress window, a book in use, and a
// compaction that fails or is killed at any step.
#include "store/compress_db.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <thread>

#include "platform/core/error.h"
#include "platform/dao/dao_test_util.h"
#include "platform/shell/file_system.h"
#include "store_test_util.h"
#include "support/book_fixture.h"

namespace zelvo::testing {
namespace {

using namespace zelvo::dao;

ino_t Inode(const std::string& path) {
    struct stat st{};
    return ::stat(path.c_str(), &st) == 0 ? st.st_ino : 0;
}

class CompressDbTest : public StoreTest {
protected:
    // The sample book with many more persons, some of them deleted, so that
    // the compaction has something to do.
    void MakeBook() {
        Database db = CreateSampleBook(book());
        db.Execute("Update PersonalData Set Comments = \"" + std::string(200, 'x') + "\"");
        // Doubling by copying the table into itself: 4 persons become 4096.
        for (int i = 0; i < 10; ++i)
            db.Execute("Insert Into PersonalData (FullName, Comments) Select FullName, Comments From PersonalData "
                       "Where [Personal ID] > 1");
        db.Execute("Delete From PersonalData Where [Personal ID] Mod 3 = 0");
        db.Close();
        persons_ = CountRows(book(), "PersonalData");
        ASSERT_GT(persons_, 2000);
    }

    // The book at its path is whole: it opens, passes SQLite's own check
    // and holds every person.
    void ExpectWholeBook() {
        Database db = Engine().OpenDatabase(book());
        EXPECT_EQ(RowsText(db, "Select Count(*) From PersonalData"), std::to_string(persons_));
        EXPECT_EQ(RowsText(db, "Select FullName From PersonalData Where [Personal ID]=1"), "Иванов Иван");
        db.Close();
        sqlite3* raw = nullptr;
        ASSERT_EQ(sqlite3_open_v2(book().c_str(), &raw, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(raw, "PRAGMA integrity_check", -1, &st, nullptr);
        ASSERT_EQ(sqlite3_step(st), SQLITE_ROW);
        EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)), "ok");
        sqlite3_finalize(st);
        sqlite3_close(raw);
    }

    std::string backup() const { return InApp("~AddressBookW.mdb"); }
    std::string temp() const { return InApp("~~AddressBookW.mdb"); }

    long persons_ = 0;
};

TEST_F(CompressDbTest, MissingBookDoesNothing) {
    std::vector<std::string> labels;
    auto previous = SetCompressFormObserver([&](const frmCompress& f) { labels.push_back(f.Label1); });
    int reports = Reports();
    CompressDB(InApp("nothing.mdb"));
    CompressDB();
    SetCompressFormObserver(previous);
    EXPECT_TRUE(labels.empty());
    EXPECT_EQ(Reports(), reports);
    EXPECT_TRUE(std::filesystem::is_empty(app()));
}

TEST_F(CompressDbTest, CompactsWithABackupAndShowsEachStep) {
    MakeBook();
    std::string before = ReadBytes(book());
    std::vector<std::string> seen;
    auto previous = SetCompressFormObserver([&](const frmCompress& f) {
        std::string state = f.Caption + "|" + f.Label1 + "|" + (f.Visible ? "shown" : "hidden") + "|" +
                            (f.TopMost ? "top" : "") + "|" + (f.AnimationOpen ? "anim" : "");
        if (seen.empty() || seen.back() != state) seen.push_back(state);
    });
    CompressDB();
    SetCompressFormObserver(previous);
    EXPECT_EQ(seen, (std::vector<std::string>{
                        "Address Book|Compression base ...|hidden|top|",
                        "Address Book|Creating a database backup ...|hidden|top|",
                        "Address Book|Creating a database backup ...|shown|top|",
                        "Address Book|Preparations for the compression of the base ...|shown|top|",
                        "Address Book|Compression base ...|shown|top|",
                        "Address Book|Removing old copies ...|shown|top|",
                        "Address Book|Moving the base ...|shown|top|",
                        "Address Book|Moving the base ...|hidden|top|",
                    }));
    EXPECT_EQ(ReadBytes(backup()), before);
    EXPECT_FALSE(shell::FileExists(temp()));
    EXPECT_LT(ReadBytes(book()).size(), before.size());
    EXPECT_EQ(shell::GetAttributes(book()), shell::kHidden);
    ExpectWholeBook();
}

TEST_F(CompressDbTest, AnimationPlaysWhenItsFileIsThere) {
    MakeBook();
    WriteBytes(InApp("Compress.avi"), "RIFF");
    bool played = false;
    auto previous = SetCompressFormObserver([&](const frmCompress& f) { played |= f.AnimationOpen && f.Visible; });
    CompressDB();
    SetCompressFormObserver(previous);
    EXPECT_TRUE(played);
}

TEST_F(CompressDbTest, TwiceInARowBackupHoldsTheStateBeforeTheSecond) {
    MakeBook();
    CompressDB();
    std::string afterFirst = ReadBytes(book());
    CompressDB();
    EXPECT_EQ(ReadBytes(backup()), afterFirst);
    EXPECT_FALSE(shell::FileExists(temp()));
    ExpectWholeBook();
}

TEST_F(CompressDbTest, CountersGoOnFromTheHighestNumberLeft) {
    MakeBook();
    {
        Database db = Engine().OpenDatabase(book());
        db.Execute("Delete From PersonalData Where [Personal ID] > 10");
        db.Close();
    }
    CompressDB();
    Database db = Engine().OpenDatabase(book());
    Recordset rs = db.OpenRecordset("PersonalData");
    rs.AddNew();
    EXPECT_EQ(rs("Personal ID").AsInteger(), 11);
}

TEST_F(CompressDbTest, BookOpenElsewhereIsLeftUntouched) {
    MakeBook();
    shell::SetAttributes(book(), 0);
    std::string before = ReadBytes(book());
    ino_t inode = Inode(book());
    for (bool otherProcess : {false, true}) {
        SCOPED_TRACE(otherProcess ? "other process" : "this process");
        std::unique_ptr<OtherProcess> other;
        Database mine;
        if (otherProcess) other = HoldInOtherProcess(book(), false);
        else mine = Engine().OpenDatabase(book());
        int reports = Reports();
        CompressDB();
        EXPECT_EQ(Reports(), reports);  // no message
        EXPECT_EQ(Inode(book()), inode);
        EXPECT_EQ(shell::GetAttributes(book()), 0);
        EXPECT_TRUE(shell::FileExists(backup()));
        EXPECT_FALSE(shell::FileExists(temp()));
        if (mine.IsOpen()) mine.Close();
    }
    EXPECT_EQ(ReadBytes(book()), before);
}

TEST_F(CompressDbTest, HiddenBookStaysHidden) {
    MakeBook();
    shell::SetAttributes(book(), shell::kHidden);
    CompressDB(book());
    EXPECT_EQ(shell::GetAttributes(book()), shell::kHidden);
    ExpectWholeBook();
}

const CompressStep kAllSteps[] = {CompressStep::Backup,   CompressStep::RemoveTemporary, CompressStep::Compact,
                                  CompressStep::Compacted, CompressStep::Replace,        CompressStep::Replaced,
                                  CompressStep::Hidden};

TEST_F(CompressDbTest, FailureAtAnyStepIsReportedAndLeavesAWholeBook) {
    MakeBook();
    for (CompressStep failing : kAllSteps) {
        SCOPED_TRACE(static_cast<int>(failing));
        bool formUp = false;
        auto previousObserver = SetCompressFormObserver([&](const frmCompress& f) { formUp = f.Visible; });
        auto previous = SetCompressFaultHook([failing](CompressStep step) {
            if (step == failing) throw Error(61, "Disk full");
        });
        int reports = Reports();
        CompressDB();
        SetCompressFaultHook(previous);
        SetCompressFormObserver(previousObserver);
        EXPECT_EQ(Reports(), reports + 1);
        EXPECT_FALSE(formUp);
        ExpectWholeBook();
    }
    // What a failed run left behind does not stand in the next one's way.
    CompressDB();
    EXPECT_FALSE(shell::FileExists(temp()));
    ExpectWholeBook();
}

// Runs a compaction in a child process that dies at `step` without any
// clean-up, as a killed process would.
void CompactAndDieAt(CompressStep step) {
    pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        SetCompressFaultHook([step](CompressStep now) {
            if (now == step) _exit(0);
        });
        CompressDB();
        _exit(0);
    }
    int status = 0;
    waitpid(pid, &status, 0);
}

TEST_F(CompressDbTest, KilledAtEveryStepLeavesAWholeBook) {
    MakeBook();
    for (CompressStep step : kAllSteps) {
        SCOPED_TRACE(static_cast<int>(step));
        CompactAndDieAt(step);
        ExpectWholeBook();
    }
    CompressDB();
    EXPECT_FALSE(shell::FileExists(temp()));
    ExpectWholeBook();
}

TEST_F(CompressDbTest, KilledAtRandomMomentsLeavesAWholeBook) {
    MakeBook();
    // Kills fall anywhere in the first two compactions of the child, however
    // fast this machine is at the moment.
    auto t0 = std::chrono::steady_clock::now();
    CompressDB();
    auto one = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - t0);
    std::uniform_int_distribution<long> delay(0, 2 * one.count() + 1000);
    std::mt19937 gen(42);
    int midway = 0;  // rounds that were killed with the compacted copy begun
    for (int round = 0; round < 40; ++round) {
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            for (;;) CompressDB();
        }
        std::this_thread::sleep_for(std::chrono::microseconds(delay(gen)));
        kill(pid, SIGKILL);
        int status = 0;
        waitpid(pid, &status, 0);
        SCOPED_TRACE(round);
        midway += shell::FileExists(temp());
        ExpectWholeBook();
    }
    EXPECT_GT(midway, 0) << "no kill fell inside a compaction; the test proves nothing";
}

}  // namespace
}  // namespace zelvo::testing
