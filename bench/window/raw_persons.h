// The anchor of the window benchmarks: the persons of the live side read
// with SQLite's C API, as few steps as the rows allow.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/dao/jet/jet_sql.h"

namespace zelvo::bench {

struct RawPerson {
    std::int64_t id;
    std::string text;
};

// Every person with a membership on the live side, once, with the text a
// list shows: FullName, or else the three name parts. Empty when the book
// cannot be read.
inline std::vector<RawPerson> ReadLivePersons(const std::string& book) {
    std::vector<RawPerson> rows;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(book.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return rows;
    }
    // The book's text columns are declared with the engine's collation.
    dao::jet::RegisterJetRuntime(db);
    sqlite3_stmt* s = nullptr;
    sqlite3_prepare_v2(db,
                       "SELECT DISTINCT p.\"Personal ID\", p.FirstName, p.MiddleName, p.SurName, p.FullName "
                       "FROM PersonalData p, Projects j WHERE j.InsArcPrj = 0 AND j.OwnerType = 0 "
                       "AND j.\"Owner ID\" = p.\"Personal ID\"",
                       -1, &s, nullptr);
    auto text = [s](int i) {
        const unsigned char* t = sqlite3_column_text(s, i);
        return t ? std::string(reinterpret_cast<const char*>(t)) : std::string();
    };
    while (sqlite3_step(s) == SQLITE_ROW) {
        RawPerson r{sqlite3_column_int64(s, 0), text(4)};
        if (r.text.empty()) r.text = text(1) + " " + text(2) + " " + text(3);
        rows.push_back(std::move(r));
    }
    sqlite3_finalize(s);
    sqlite3_close(db);
    return rows;
}

}  // namespace zelvo::bench
