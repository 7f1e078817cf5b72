// A deletion is kept whole or not at all: a failure at any row of the
// cascade, or a book somebody else is writing to, leaves every table as it
// was.
#include <sqlite3.h>

#include <map>

#include "organizations/db_zelvo.h"
#include "organizations/org_sql.h"
#include "org_book.h"
#include "platform/core/error.h"
#include "platform/dao/connection.h"
#include "platform/dao/dbengine.h"

namespace zelvo::testing {
namespace {

class DeletionAtomicityTest : public OrgBookTest {
protected:
    void TearDown() override {
        SetDeletionFaultHook(nullptr);
        OrgBookTest::TearDown();
    }

    // Every row of every table the deletions touch, as text.
    std::map<std::string, std::string> Book() {
        std::map<std::string, std::string> book;
        for (const char* table : {"Organizations", "JobTitles", "Employees", "Rooms", "Resources", "ResourcesOwners",
                                  "Projects", "PersonalData"}) {
            std::string& rows = book[table];
            sqlite3_exec(
                db_.connection()->db(), (std::string("SELECT * FROM ") + table + " ORDER BY rowid").c_str(),
                [](void* out, int n, char** values, char**) {
                    auto& text = *static_cast<std::string*>(out);
                    for (int i = 0; i < n; ++i) text += (values[i] ? values[i] : "<null>") + std::string("|");
                    text += "\n";
                    return 0;
                },
                &rows, nullptr);
        }
        return book;
    }

    // An organization with some of everything: a subdivision, job titles
    // with employees and a vacancy, rooms one inside the other with a phone,
    // resources of its own and shared with a person.
    std::int32_t Acme() {
        std::int32_t acme = Unit("Acme"), sales = Unit("Sales", acme);
        std::int32_t ann = Person("Ann"), bob = Person("Bob");
        std::int32_t building = Room(acme, "Building", 0, true), office = Room(acme, "Office", building);
        std::int32_t director = Job(acme, "Director"), clerk = Job(sales, "Clerk");
        std::int32_t annClerk = Employee(clerk, ann, office);
        Employee(clerk, 0);
        Employee(director, bob, building);
        Resource("111", {{acme, oOrganization_ID}, {ann, oPersonal_ID}});
        Resource("222", {{office, oRoom_ID}});
        Resource("ann@acme", {{annClerk, oEmployees_ID}}, RsEmail);
        ProjectRow(acme, oOrganization_ID, "A");
        return acme;
    }

    // Makes the `n`th row deletion fail; `counted` tells how many were tried.
    static void FailAtRow(int n, int& counted) {
        counted = 0;
        SetDeletionFaultHook([n, &counted] {
            if (++counted == n) throw Error(3026, "Not enough space on disk.", "DAO.Recordset");
        });
    }
};

TEST_F(DeletionAtomicityTest, OrganizationFailingAtAnyRowLeavesTheBookAsItWas) {
    std::int32_t acme = Acme();
    const auto before = Book();

    // Its rows in the order they go: the two rooms, Director's employee and
    // row, then Sales with Clerk's two employees and row, Sales, Acme.
    constexpr int kRows = 9;
    int rows = 0;
    for (int n : {1, 3, 5, 8, kRows}) {
        SCOPED_TRACE(n);
        FailAtRow(n, rows);
        EXPECT_THROW(dbZelvo().DeleteOrg(acme), Error);
        EXPECT_EQ(rows, n);
        EXPECT_EQ(Book(), before);
    }
    FailAtRow(kRows + 1, rows);
    EXPECT_TRUE(dbZelvo().DeleteOrg(acme));
    EXPECT_EQ(rows, kRows);
    EXPECT_EQ(Count("Select * From Organizations"), 0);
    EXPECT_EQ(Count("Select * From Employees"), 0);
}

TEST_F(DeletionAtomicityTest, JobTitleAndRoomsFailingMidwayAreUndoneWhole) {
    std::int32_t acme = Acme();
    const auto before = Book();
    int rows = 0;

    // The job title's employees go before its row: failing at the row
    // brings them back. The routine passes the error over and says False.
    auto jobs = db_.OpenRecordset(JobTitlesOfOrgSQL(acme));
    std::int32_t director = ValueConv::ToLong(jobs("Job ID"));
    FailAtRow(2, rows);
    {
        dbZelvo zelvo;
        EXPECT_FALSE(zelvo.DeleteJobTitle(director, jobs));
    }
    EXPECT_EQ(Book(), before);

    // The inner room goes before the outer one of the organization.
    FailAtRow(2, rows);
    EXPECT_THROW(dbZelvo().DeleteOrgRooms(acme), Error);
    EXPECT_EQ(Book(), before);
}

TEST_F(DeletionAtomicityTest, BookLockedByAnotherWriterIsToldAndLeftAlone) {
    std::int32_t acme = Acme();
    const auto before = Book();
    dao::Engine().SetLockTimeout(50);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(DatabasePath().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    try {
        dbZelvo().DeleteOrg(acme);
        ADD_FAILURE() << "deleted while another held the lock";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 3218);
    }
    sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    dao::Engine().SetLockTimeout(2000);
    EXPECT_EQ(Book(), before);
    // Once the other writer is done, the deletion goes through.
    EXPECT_TRUE(dbZelvo().DeleteOrg(acme));
    EXPECT_EQ(Count("Select * From Employees"), 0);
}

}  // namespace
}  // namespace zelvo::testing
