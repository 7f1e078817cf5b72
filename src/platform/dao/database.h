// An open book: DAO's `Database` over one SQLite file.
//
// Several Database objects may stand on one file at once, in this process
// and in others; each sees what the others wrote at its next query or
// Requery. Closing a Database closes its record sets.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/dao/querydef.h"
#include "platform/dao/recordset.h"
#include "platform/dao/tabledef.h"

namespace zelvo::dao {

namespace detail {
class Connection;
}

class Database {
public:
    Database() = default;  // nothing: any use throws 3420

    // `source` is a Jet SELECT, or the name of a table or saved query.
    // Types: dbOpenDynaset (2, the default), dbOpenTable (1, a table name),
    // dbOpenSnapshot (4, read-only).
    Recordset OpenRecordset(std::string_view source, int type = dbOpenDynaset) const;

    // Runs an action statement: Insert, Update, Delete, Create/Alter/Drop Table.
    void Execute(std::string_view sql) const;
    // Rows touched by the last Execute.
    std::int64_t RecordsAffected() const;

    void Close();
    bool IsOpen() const;
    std::string Name() const;     // the file's path
    // The Jet format the book stands for: "4.0" for every book this engine
    // makes, "3.0" for a copy of a Jet 3 file compacted without
    // dbVersion40. The book's correction converts a "3.0" book.
    std::string Version() const;

    dao::TableDefs TableDefs() const;
    TableDef CreateTableDef(const std::string& name = {}) const;
    dao::QueryDefs QueryDefs() const;
    // With a name the query is saved at once (DAO's rule); without, it is a
    // temporary query that can still be opened.
    QueryDef CreateQueryDef(const std::string& name = {}, const std::string& sql = {}) const;

    explicit Database(std::shared_ptr<detail::Connection> conn) : conn_(std::move(conn)) {}
    const std::shared_ptr<detail::Connection>& connection() const { return conn_; }

private:
    detail::Connection& C() const;
    std::shared_ptr<detail::Connection> conn_;
    std::shared_ptr<std::int64_t> affected_ = std::make_shared<std::int64_t>(0);
};

}  // namespace zelvo::dao
