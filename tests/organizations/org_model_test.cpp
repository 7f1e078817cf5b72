// Making units, reading the tree back: the path text of a unit, the unit of
// a job, the job of an employee, the captions of nameless objects, and the
// queries that read the tree.
#include "organizations/org_model.h"

#include "organizations/org_codes.h"
#include "organizations/org_sql.h"
#include "org_book.h"
#include "platform/dao/connection.h"
#include "platform/dao/dbengine.h"
#include "zelvo/addressbook.h"

namespace zelvo::testing {
namespace {

class OrgModelTest : public OrgBookTest {
protected:
    // AddNewOfficeObject as a host calls it, the prompt answered by `answer`.
    std::string Add(std::optional<std::string> answer, std::int32_t type, std::int32_t& parent, std::string& icon,
                    std::int32_t& id, std::string project = "", bool archive = false) {
        host_.QueueInputBoxAnswer(std::move(answer));
        cAddressbook book;
        book.AppPath = AppPath;
        return book.AddNewOfficeObject(nullptr, type, parent, icon, id, nullptr, project, archive);
    }
    std::string NameOf(std::int32_t id) {
        auto rs = db_.OpenRecordset("Select * From Organizations Where [Organization ID]=" + N(id));
        return rs("Organization").IsNull() ? "<Null>" : ValueConv::ToText(rs("Organization"));
    }
    std::int32_t ParentOf(std::int32_t id) {
        return ValueConv::ToLong(
            db_.OpenRecordset("Select * From Organizations Where [Organization ID]=" + N(id))("Parent ID"));
    }
};

TEST_F(OrgModelTest, NewOrganizationIsAlwaysAtTheRootAndFiledOnlyWithAProject) {
    std::int32_t parent = 77, id = 0;
    std::string icon;
    EXPECT_EQ(Add("Acme", Org, parent, icon, id, "A\\B", true), "Acme");
    EXPECT_EQ(parent, 0);
    EXPECT_EQ(icon, "Org");
    ASSERT_GT(id, 0);
    EXPECT_EQ(NameOf(id), "Acme");
    EXPECT_EQ(ParentOf(id), 0);
    EXPECT_EQ(Count("Select * From Projects Where [Owner ID]=" + N(id) +
                    " and OwnerType=1 and Project=\"A\\B\" and InsArcPrj=True"),
              1);

    // A project of blanks files nothing.
    std::int32_t second = 0;
    EXPECT_EQ(Add("Beta", Org, parent, icon, second, "   "), "Beta");
    EXPECT_GT(second, id);
    EXPECT_EQ(Count("Select * From Projects"), 1);
    EXPECT_EQ(host_.Log().back().prompt, "Enter the name of organization");
}

TEST_F(OrgModelTest, SubdivisionKeepsItsParentAndAQuestionMarkLeavesItNameless) {
    std::int32_t org = Unit("Acme");
    std::int32_t parent = org, id = 0;
    std::string icon;
    EXPECT_EQ(Add("?", SubDiv, parent, icon, id), "?");
    EXPECT_EQ(icon, "SubDiv");
    EXPECT_EQ(parent, org);
    EXPECT_EQ(NameOf(id), "<Null>");
    EXPECT_EQ(ParentOf(id), org);

    // Written as typed, not trimmed; quotes are just characters.
    std::int32_t named = 0;
    EXPECT_EQ(Add("  \"Sales\" ", SubDiv, parent, icon, named), "  \"Sales\" ");
    EXPECT_EQ(NameOf(named), "  \"Sales\" ");
}

TEST_F(OrgModelTest, BlankAnswerOrOtherKindsWriteNothing) {
    std::int32_t parent = 5, id = 42;
    std::string icon;
    EXPECT_EQ(Add("   ", Org, parent, icon, id), "");
    EXPECT_EQ(parent, 0);  // set before the answer was read
    EXPECT_EQ(icon, "Org");
    EXPECT_EQ(Add(std::nullopt, SubDiv, parent, icon, id), "");  // cancelled
    EXPECT_EQ(id, 42);

    // Job titles and employees are not made here, and nobody is asked.
    int prompts = static_cast<int>(host_.Log().size());
    for (std::int32_t kind : {int{JobTitle}, int{employee}, 2, -1}) {
        icon = "keep";
        EXPECT_EQ(Add("Never", kind, parent, icon, id), "");
        EXPECT_EQ(icon, "keep");
    }
    EXPECT_EQ(static_cast<int>(host_.Log().size()), prompts);
    EXPECT_EQ(Count("Select * From Organizations"), 0);
}

TEST_F(OrgModelTest, NameLongerThanTheColumnLeavesNoRowAndNoProjectRow) {
    std::int32_t parent = 0, id = 9;
    std::string icon;
    std::string tooLong(300, 'x');
    EXPECT_EQ(Add(tooLong, Org, parent, icon, id, "A"), tooLong);
    EXPECT_EQ(id, 9);
    EXPECT_EQ(Count("Select * From Organizations"), 0);
    EXPECT_EQ(Count("Select * From Projects"), 0);
    EXPECT_TRUE(host_.Log().size() == 1);  // the prompt; no message about the failure
}

TEST_F(OrgModelTest, PathTextSkipsNamelessUnitsAndStopsAtMissingParentsAndCycles) {
    std::int32_t top = Unit("Acme");
    std::int32_t sales = Unit(" Sales ", top);
    std::int32_t nameless = Unit("", sales);
    std::int32_t east = Unit("East", nameless);
    auto rs = db_.OpenRecordset("Organizations");

    std::string subs = "old", org = "old";
    std::int32_t topId = -1;
    GetOrgPath(east, rs, subs, org, topId);
    EXPECT_EQ(subs, "Sales, East");
    EXPECT_EQ(org, "Acme");
    EXPECT_EQ(topId, top);

    GetOrgPath(top, rs, subs, org, topId);
    EXPECT_EQ(subs, "");
    EXPECT_EQ(topId, top);

    // Unit 0 and a unit that is not there leave everything as it was.
    subs = org = "kept";
    GetOrgPath(0, rs, subs, org, topId);
    EXPECT_EQ(subs, "kept");

    // A parent that is gone: the names so far, no organization.
    std::int32_t orphan = Unit("Orphan", 9999);
    rs.Requery();
    topId = -1;
    org = "kept";
    GetOrgPath(orphan, rs, subs, org, topId);
    EXPECT_EQ(subs, "Orphan");
    EXPECT_EQ(org, "kept");
    EXPECT_EQ(topId, -1);

    // A cycle in a damaged book ends the walk.
    std::int32_t a = Unit("A", 1);
    std::int32_t b = Unit("B", a);
    db_.Execute("Update Organizations Set [Parent ID]=" + N(b) + " Where [Organization ID]=" + N(a));
    rs.Requery();
    GetOrgPath(b, rs, subs, org, topId);
    EXPECT_EQ(subs, "A, B");
    EXPECT_EQ(topId, -1);
}

TEST_F(OrgModelTest, TenThousandDeepChainIsWalked) {
    std::int32_t top = Unit("Root");
    std::int32_t unit = Chain("Insert Into Organizations ([Parent ID]) Values (?)", top, 10000);
    auto rs = db_.OpenRecordset("Organizations");
    std::string subs, org;
    std::int32_t topId = 0;
    GetOrgPath(unit, rs, subs, org, topId);
    EXPECT_EQ(org, "Root");
    EXPECT_EQ(topId, top);
}

TEST_F(OrgModelTest, JobOfEmployeeAndUnitOfJob) {
    std::int32_t unit = Unit("Acme");
    std::int32_t job = Job(unit, "Clerk");
    std::int32_t person = Person("Ann");
    std::int32_t employeeId = Employee(job, person, 12);
    EXPECT_EQ(FindOrgOfJob(job), unit);
    EXPECT_EQ(FindOrgOfJob(job + 100), 0);

    std::int32_t room = -1, personal = -1;
    EXPECT_EQ(FindJobOfEmployee(employeeId, room, personal), job);
    EXPECT_EQ(room, 12);
    EXPECT_EQ(personal, person);
    room = personal = -1;
    EXPECT_EQ(FindJobOfEmployee(employeeId + 100, room, personal), 0);
    EXPECT_EQ(room, -1);
}

TEST_F(OrgModelTest, CaptionsNameTheNameless) {
    EXPECT_EQ(UnitCaption(""), "Organization with no name");
    EXPECT_EQ(RootCaption(), "Organizations");
    EXPECT_EQ(JobTitleCaption("Clerk", "Sales"), "Clerk [Sales]");
    EXPECT_EQ(JobTitleCaption("", "Sales"), "Job title without a name [Sales]");
    EXPECT_EQ(EmployeeCaption("  Ann  ", ""), "Ann [Organization with no name]");
    EXPECT_EQ(EmployeeCaption("", "Sales"), "Vacancy or employee with no name [Sales]");
}

TEST_F(OrgModelTest, NewJobTitleAndEmployeeRows) {
    std::int32_t unit = Unit("Acme");
    auto jobs = db_.OpenRecordset(JobTitlesOfOrgSQL(unit));
    std::int32_t job = AddJobTitle(jobs, unit, "?");
    ASSERT_GT(job, 0);
    EXPECT_TRUE(db_.OpenRecordset("Select * From JobTitles Where [Job ID]=" + N(job))("JobTitle").IsNull());
    EXPECT_EQ(AddJobTitle(jobs, unit, "  "), 0);
    EXPECT_EQ(AddJobTitle(jobs, unit, std::string(300, 'j')), 0);
    EXPECT_EQ(Count("Select * From JobTitles"), 1);

    std::int32_t person = Person("Ann");
    std::int32_t employeeId = AddEmployee(job, person);
    ASSERT_GT(employeeId, 0);
    std::int32_t room = -1, personal = 0;
    EXPECT_EQ(FindJobOfEmployee(employeeId, room, personal), job);
    EXPECT_EQ(personal, person);
    EXPECT_EQ(room, 0);

    std::int32_t newEmployee = 0;
    std::int32_t blank = AddNewPersonAsEmployee(job, newEmployee);
    ASSERT_GT(blank, person);
    EXPECT_GT(newEmployee, employeeId);
    EXPECT_EQ(Count("Select * From Projects"), 0);
}

TEST_F(OrgModelTest, TreeQueriesFindWhatTheWindowsList) {
    std::int32_t top = Unit("Acme");
    db_.Execute("Insert Into Organizations (Organization, [Parent ID]) Values (\"NullParent\", Null)");
    std::int32_t sub = Unit("Sales", top);
    EXPECT_EQ(Count(OrgChildrenSQL(0)), 2);
    EXPECT_EQ(Ids(OrgChildrenSQL(top), "Organization ID"), std::vector<std::int32_t>{sub});
    EXPECT_EQ(OrgChildrenSQL(7), "Select * from Organizations  Where Organizations.[Parent ID]=7 ;");

    std::int32_t job = Job(sub, "Clerk");
    std::int32_t ann = Person("Ann");
    std::int32_t withAnn = Employee(job, ann, 3);
    std::int32_t vacancy = Employee(job, 0);
    EXPECT_EQ(Ids(EmployeesOfJobSQL(job), "Employee ID"), (std::vector<std::int32_t>{withAnn, vacancy}));
    EXPECT_EQ(Ids(EmployeesPersonsOfJobSQL(job, db_), "Employee ID"), std::vector<std::int32_t>{withAnn});
    EXPECT_EQ(Ids(EmployeesPersonsOfRoomSQL(3, db_), "Employee ID"), std::vector<std::int32_t>{withAnn});

    // The jobs of a person, with the unit of each; none for a person with none.
    auto jobs = db_.OpenRecordset(SqlPersonJobs(ann));
    ASSERT_FALSE(jobs.IsEOF());
    EXPECT_EQ(ValueConv::ToText(jobs("JobTitle")), "Clerk");
    EXPECT_EQ(ValueConv::ToLong(jobs("Organization ID")), sub);
    EXPECT_EQ(Count(SqlPersonJobs(Person("Bob"))), 0);
    EXPECT_EQ(Count(SqlPersonJobs(0)), 0);
}

TEST_F(OrgModelTest, JobsOfAPersonAreFoundByAnIndexOnceTheBookIsLarge) {
    // The indexes of Employees over [Personal ID], read from the file.
    auto employeeIndexes = [&] {
        int n = 0;
        sqlite3_exec(
            db_.connection()->db(),
            "SELECT 1 FROM sqlite_master WHERE type='index' AND tbl_name='Employees' AND sql LIKE '%Personal ID%'",
            [](void* count, int, char**, char**) {
                ++*static_cast<int*>(count);
                return 0;
            },
            &n, nullptr);
        return n;
    };
    std::int32_t ann = Person("Ann");
    std::int32_t job = Job(Unit("Acme"), "Clerk");
    Employee(job, ann);
    // A small table is read faster than an index is kept.
    EXPECT_EQ(Count(SqlPersonJobs(ann)), 1);
    EXPECT_EQ(employeeIndexes(), 0);
    Chain("Insert Into Employees ([Job ID], [Personal ID]) Values (" + N(job) + ", ?)", ann, 1500);
    dao::Database other = dao::Engine().OpenDatabase(DatabasePath());
    auto jobs = other.OpenRecordset(SqlPersonJobs(ann));
    EXPECT_EQ(ValueConv::ToText(jobs("JobTitle")), "Clerk");
    jobs.Close();
    other.Close();
    EXPECT_EQ(employeeIndexes(), 1);
}

TEST(OrgCodes, IconsAndTypes) {
    EXPECT_EQ(GetObjTypeByIcon(Variant("Org")), 1);
    EXPECT_EQ(GetObjTypeByIcon(Variant("SubDiv")), 1);
    EXPECT_EQ(GetObjTypeByIcon(Variant("JobTitle")), 2);
    EXPECT_EQ(GetObjTypeByIcon(Variant("Employee")), 4);
    EXPECT_EQ(GetObjTypeByIcon(Variant("User")), 0);
    EXPECT_EQ(GetObjTypeByIcon(Variant("Room")), 0);
    EXPECT_EQ(GetObjTypeByIcon(Variant()), 0);
    for (int kind : {Org, SubDiv, JobTitle, employee})
        EXPECT_EQ(GetObjTypeByIcon(Variant(IconOfOfficeObject(kind))), OwnerTypeOfOfficeObject(kind));
}

}  // namespace
}  // namespace zelvo::testing
