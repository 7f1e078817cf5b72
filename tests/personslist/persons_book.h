// The sample book in a folder of its own, with AppPath pointed at it, for the
// persons list's tests.
//   1 "Иванов Иван"     live "A" and "A\B"; e-mail ivan@example.org, then
//                       ivanov@work.example; a phone
//   2 "Smith"           live "AB"; e-mail smith@example.com
//   3 Nobody No Name    no FullName, no project
//   4 "Archive Person"  archived "Old"
#pragma once

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "platform/core/value_conv.h"
#include "store/library_state.h"
#include "support/book_fixture.h"
#include "support/temp_dir.h"

namespace zelvo::testing {

class PersonsBookTest : public ::testing::Test {
protected:
    void SetUp() override {
        saved_ = AppPath;
        AppPath = dir_.path().string();
        db_ = CreateSampleBook(DatabasePath());
    }
    void TearDown() override {
        if (db_.IsOpen()) db_.Close();
        AppPath = saved_;
    }

    // The identities of the rows of `sql`, in record order.
    std::vector<int> Ids(const std::string& sql) {
        std::vector<int> ids;
        for (auto rs = db_.OpenRecordset(sql); !rs.IsEOF(); rs.MoveNext())
            ids.push_back(ValueConv::ToLong(rs("Personal ID")));
        return ids;
    }
    std::set<int> IdSet(const std::string& sql) {
        auto v = Ids(sql);
        return {v.begin(), v.end()};
    }

    TempDir dir_;
    dao::Database db_;
    std::string saved_;
};

}  // namespace zelvo::testing
