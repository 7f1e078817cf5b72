// A small address book for the translator's tests, made with raw SQLite:
// the twelve tables of the book's schema (every Text column COLLATE JET,
// every Counter an INTEGER PRIMARY KEY AUTOINCREMENT), the saved queries
// OrgPrj and PersPrj as views, and a handful of rows chosen so that each
// statement form has something to find and something to leave out.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sqlite3.h>

#include "platform/dao/jet/jet_sql.h"

namespace zelvo::dao::jet::testing {

// Tables and views of an open SQLite connection, as the translator asks.
class SqliteCatalog : public Catalog {
public:
    explicit SqliteCatalog(sqlite3* db) : db_(db) {}
    std::optional<CatalogObject> Find(std::string_view name) const override;

private:
    sqlite3* db_;
};

struct Result {
    std::vector<std::string> columns;  // DAO names, hidden columns left out
    std::vector<std::string> rows;     // each row's values joined by "|", Null as "<null>"
    int hidden = 0;
};

// The rows of the book as SQLite INSERT statements, for a book whose tables
// are made elsewhere with the same columns in the same order.
const char* TestBookRows();

class TestBook {
public:
    TestBook();  // an in-memory book with the rows of test_book.cpp
    ~TestBook();
    TestBook(const TestBook&) = delete;
    TestBook& operator=(const TestBook&) = delete;

    sqlite3* db() const { return db_; }
    const Catalog& catalog() const { return catalog_; }

    // Translates and runs one Jet statement, binding the literals.
    // Throws zelvo::Error from the translator, std::runtime_error from SQLite.
    Result Run(std::string_view jetSql) const;
    // Runs raw SQLite text (no result).
    void Exec(const std::string& sql) const;
    // Rows of the record set `baseSql` (Jet) that the criteria string picks,
    // through the translated criteria over "f<i>" columns.
    std::vector<std::string> Find(std::string_view baseSql, std::string_view criteria) const;

private:
    sqlite3* db_ = nullptr;
    SqliteCatalog catalog_;
};

}  // namespace zelvo::dao::jet::testing
