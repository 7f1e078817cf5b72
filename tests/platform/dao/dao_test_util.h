// Helpers shared by the engine's tests.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/core/error.h"
#include "platform/dao/dbengine.h"

namespace zelvo::testing {

// The engine error number `f` raises, or 0 when it raises none.
template <class F>
int ErrorOf(F&& f) {
    try {
        f();
    } catch (const Error& e) {
        return e.number();
    }
    return 0;
}

// The cursor of a record set as a short text: "pos=1 bof=0 eof=0".
inline std::string Cursor(const dao::Recordset& rs) {
    return "pos=" + std::to_string(rs.AbsolutePosition()) + " bof=" + std::to_string(rs.IsBOF()) +
           " eof=" + std::to_string(rs.IsEOF());
}

// One column of every row, walked from the first: "a,b,c".
inline std::string Column(dao::Recordset rs, const std::string& field) {
    std::string out;
    if (rs.AbsolutePosition() == -1 && rs.IsEOF()) return out;
    rs.MoveFirst();
    for (; !rs.IsEOF(); rs.MoveNext()) {
        if (!out.empty()) out += ",";
        out += rs(field).AsText();
    }
    return out;
}

// The whole result of a SELECT, one column joined: "a,b,c".
inline std::string Rows(const dao::Database& db, const std::string& sql, const std::string& field) {
    return Column(db.OpenRecordset(sql), field);
}

}  // namespace zelvo::testing
