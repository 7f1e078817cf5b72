// The statement forms and criteria strings of the book's code
// (jet/statement_forms.cpp) through the whole engine: a book made by
// CreateBookSchema with its catalog and saved queries, each form opened with
// Database::OpenRecordset and walked, each criteria string found with
// FindFirst/FindNext and FindLast/FindPrevious.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "dao_test_util.h"
#include "jet/statement_forms.h"
#include "jet/test_book.h"
#include "platform/dao/connection.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using dao::jet::testing::Criteria;
using dao::jet::testing::Form;

// A value as the raw-SQLite runs of the forms print it.
std::string Show(const Variant& v) {
    switch (v.kind()) {
        case Variant::Kind::Null: return "<null>";
        case Variant::Kind::Boolean: return v.boolean() ? "-1" : "0";
        case Variant::Kind::Bytes: return "<" + std::to_string(v.bytes().size()) + " bytes>";
        default: return v.AsText();
    }
}

std::string Row(const dao::Recordset& rs) {
    std::string row;
    for (int i = 0; i < rs.Fields().Count(); ++i) row += (i ? "|" : "") + Show(rs.Value(i));
    return row;
}

// One book for all forms: they only read.
class EngineBook : public ::testing::Test {
public:
    static void SetUpTestSuite() {
        dir = std::make_unique<TempDir>();
        db = dao::Engine().CreateDatabase(dir->File("AddressBookW.mdb"));
        CreateBookSchema(db);
        // The rows are the translator tests' own. Two postal nodes there hold
        // an empty PostIndex, which the column refuses; books converted from
        // older files can hold such values, so they are loaded as they are.
        auto& c = *db.connection();
        c.ExecRaw("PRAGMA ignore_check_constraints = ON");
        c.ExecRaw(dao::jet::testing::TestBookRows());
        c.ExecRaw("PRAGMA ignore_check_constraints = OFF");
    }
    static void TearDownTestSuite() {
        db.Close();
        dir.reset();
    }
    static std::unique_ptr<TempDir> dir;
    static dao::Database db;
};
std::unique_ptr<TempDir> EngineBook::dir;
dao::Database EngineBook::db;

class EngineStatementForms : public EngineBook, public ::testing::WithParamInterface<Form> {};

TEST_P(EngineStatementForms, GiveTheirRows) {
    const Form& f = GetParam();
    std::vector<std::string> got;
    try {
        dao::Recordset rs = db.OpenRecordset(f.sql);
        for (; !rs.IsEOF(); rs.MoveNext()) got.push_back(Row(rs));
        if (!got.empty()) {
            rs.MoveLast();
            EXPECT_EQ(rs.RecordCount(), static_cast<std::int64_t>(got.size()));
        }
    } catch (const Error& e) {
        FAIL() << f.name << ": error " << e.number() << " " << e.description() << "\n" << f.sql;
    }
    std::vector<std::string> want = f.rows;
    if (!f.ordered) {
        std::sort(got.begin(), got.end());
        std::sort(want.begin(), want.end());
    }
    EXPECT_EQ(got, want) << f.name << "\n" << f.sql;
}

INSTANTIATE_TEST_SUITE_P(Book, EngineStatementForms, ::testing::ValuesIn(dao::jet::testing::Forms()),
                         [](const ::testing::TestParamInfo<Form>& info) {
                             return dao::jet::testing::TestName(info.param.name);
                         });

class EngineCriteria : public EngineBook, public ::testing::WithParamInterface<Criteria> {};

TEST_P(EngineCriteria, FindTheirRowsForwardAndBackward) {
    const Criteria& c = GetParam();
    std::vector<std::string> forward, backward;
    try {
        dao::Recordset rs = db.OpenRecordset(c.base);
        for (rs.FindFirst(c.criteria); !rs.NoMatch(); rs.FindNext(c.criteria)) forward.push_back(Row(rs));
        for (rs.FindLast(c.criteria); !rs.NoMatch(); rs.FindPrevious(c.criteria)) backward.push_back(Row(rs));
    } catch (const Error& e) {
        FAIL() << c.name << ": error " << e.number() << " " << e.description() << "\n" << c.criteria;
    }
    std::reverse(backward.begin(), backward.end());
    EXPECT_EQ(forward, backward) << c.name;
    std::vector<std::string> want = c.rows;
    std::sort(forward.begin(), forward.end());
    std::sort(want.begin(), want.end());
    EXPECT_EQ(forward, want) << c.name << "\n" << c.criteria;
}

INSTANTIATE_TEST_SUITE_P(Book, EngineCriteria, ::testing::ValuesIn(dao::jet::testing::CriteriaForms()),
                         [](const ::testing::TestParamInfo<Criteria>& info) {
                             return dao::jet::testing::TestName(info.param.name);
                         });

}  // namespace
}  // namespace zelvo::testing
