// Every form of SQL text the address book builds (statement_forms.cpp),
// translated and run against the small book of test_book.cpp, with the rows
// each must give.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/core/error.h"
#include "statement_forms.h"
#include "test_book.h"

namespace zelvo::dao::jet::testing {
namespace {

class StatementForms : public ::testing::TestWithParam<Form> {};

TEST_P(StatementForms, GiveTheirRows) {
    const Form& f = GetParam();
    TestBook book;
    Result r;
    try {
        r = book.Run(f.sql);
    } catch (const Error& e) {
        FAIL() << f.name << ": error " << e.number() << " " << e.description() << "\n" << f.sql;
    }
    std::vector<std::string> got = r.rows, want = f.rows;
    if (!f.ordered) {
        std::sort(got.begin(), got.end());
        std::sort(want.begin(), want.end());
    }
    EXPECT_EQ(got, want) << f.name << "\n" << f.sql;
}

INSTANTIATE_TEST_SUITE_P(Book, StatementForms, ::testing::ValuesIn(Forms()),
                         [](const ::testing::TestParamInfo<Form>& info) { return TestName(info.param.name); });

// Field names of joins: bare where unique, "Table.Field" where two tables
// give the same name; the code reads "PersonalData.Personal ID".
TEST(StatementFormNames, JoinFieldsAreQualifiedOnlyWhereAmbiguous) {
    TestBook book;
    Result r = book.Run("Select " + kEmployees + "," + kPersonal + " from [Employees], [PersonalData] " +
                        "Where [Employees].[Job ID]=1 and [PersonalData].[Personal ID]=[Employees].[Personal ID] ;");
    EXPECT_EQ(r.columns, (std::vector<std::string>{"Job ID", "Employees.Personal ID", "Room ID", "Employees.Comments",
                                                   "Employee ID", "FirstName", "MiddleName", "SurName", "FullName",
                                                   "PersonalData.Comments", "PersonalData.Personal ID"}));
    Result star = book.Run("Select * From PersonalData, Employees Where PersonalData.[Personal ID]=Employees.[Personal ID];");
    EXPECT_EQ(star.columns[5], "PersonalData.Personal ID");
    EXPECT_EQ(star.columns[7], "Employees.Personal ID");
    Result alias = book.Run(GetPrjPersonsQuery("(Projects.Project)=\"x\"", false));
    EXPECT_EQ(alias.columns, (std::vector<std::string>{"Personal ID", "FirstName", "MiddleName", "SurName", "FullName",
                                                       "Project", "InsArcPrj", "Owner ID", "OwnerType"}));
}

class CriteriaStrings : public ::testing::TestWithParam<Criteria> {};

TEST_P(CriteriaStrings, FindTheirRows) {
    const Criteria& c = GetParam();
    TestBook book;
    std::vector<std::string> got;
    try {
        got = book.Find(c.base, c.criteria);
    } catch (const Error& e) {
        FAIL() << c.name << ": error " << e.number() << " " << e.description() << "\n" << c.criteria;
    }
    std::vector<std::string> want = c.rows;
    std::sort(got.begin(), got.end());
    std::sort(want.begin(), want.end());
    EXPECT_EQ(got, want) << c.name << "\n" << c.criteria;
}

INSTANTIATE_TEST_SUITE_P(Book, CriteriaStrings, ::testing::ValuesIn(CriteriaForms()),
                         [](const ::testing::TestParamInfo<Criteria>& info) { return TestName(info.param.name); });

}  // namespace
}  // namespace zelvo::dao::jet::testing
