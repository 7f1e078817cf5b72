// One open database file: the SQLite connection behind a `Database`, with the
// engine's catalog of field definitions and saved queries, the cache of
// translated and prepared statements, and the mapping of SQLite's failures to
// the engine's error numbers. Internal to the engine.
//
// The file is an SQLite database marked with the book's application id. Next
// to the tables it holds two catalog tables that SQLite itself does not keep:
//   MSysFields   one row a field: its DAO type, size, attributes, default,
//                required and zero-length flags, and its place in the table
//   MSysQueries  one row a saved query: its name and its Jet SQL text; the
//                query itself is a view made from the translated text, as
//                long as that text names only what the book has (see
//                schema_editor.h)
// Every Text column is declared COLLATE JET, so compares ignore case; Text(n)
// and the required and zero-length flags are CHECK and NOT NULL constraints
// named after the field, so a plain SQL statement is held to them as well.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/core/variant.h"
#include "platform/dao/dao_error.h"
#include "platform/dao/field_props.h"
#include "platform/dao/file_holder.h"
#include "platform/dao/jet/jet_sql.h"
#include "platform/dao/jet/text_util.h"

namespace zelvo::dao::detail {

class RecordsetImpl;
struct RecordsetLayout;

struct TableSchema {
    std::string name;
    std::vector<FieldProps> fields;

    const FieldProps* Find(std::string_view field) const;
    int IndexOf(std::string_view field) const;  // -1 when absent
    const FieldProps* Counter() const;
};

struct QuerySchema {
    std::string name;
    std::string sql;       // the Jet text it was given
    bool hasView = false;  // false while the text names something the book lacks
};

using jet::SameName;
using jet::SameAsciiName;

// This machine's name, for the lock messages that name who holds the file.
std::string HostName();

// Writes `name` as a quoted SQLite identifier.
std::string QuoteName(std::string_view name);

// A prepared statement borrowed from the cache; goes back (reset) when the
// lease ends.
class StatementLease {
public:
    StatementLease() = default;
    // `idle`: the idle statements of the cache entry the statement goes back
    // to (nullptr: finalized when the lease ends). The entry lives as long
    // as `generation` is the connection's.
    StatementLease(std::shared_ptr<class Connection> owner, std::vector<sqlite3_stmt*>* idle, sqlite3_stmt* stmt,
                   std::uint64_t generation);
    ~StatementLease();
    StatementLease(StatementLease&& other) noexcept;
    StatementLease& operator=(StatementLease&& other) noexcept;
    StatementLease(const StatementLease&) = delete;
    StatementLease& operator=(const StatementLease&) = delete;

    sqlite3_stmt* get() const { return stmt_; }
    explicit operator bool() const { return stmt_ != nullptr; }
    void Release();

private:
    std::shared_ptr<class Connection> owner_;
    std::vector<sqlite3_stmt*>* idle_ = nullptr;
    sqlite3_stmt* stmt_ = nullptr;
    std::uint64_t generation_ = 0;
};

class Connection : public std::enable_shared_from_this<Connection>, public jet::Catalog {
public:
    struct Options {
        bool create = false;     // make a new file; it must not exist
        bool exclusive = false;  // hold the file alone
        bool readOnly = false;
    };

    // Opens (or creates) the book at `path`. Throws 3024 (no such file),
    // 3343 (not a database of ours), 3045/3356 (held by another), 3204
    // (create over an existing file), 3044 (no such folder).
    static std::shared_ptr<Connection> Open(const std::string& path, const Options& options);

    ~Connection() override;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void Close();
    bool closed() const { return db_ == nullptr; }
    sqlite3* db() const { return db_; }
    const std::string& path() const { return path_; }
    bool readOnly() const { return readOnly_; }

    // ---- catalog
    std::optional<jet::CatalogObject> Find(std::string_view name) const override;
    const TableSchema* FindTable(std::string_view name);
    const std::vector<TableSchema>& Tables();
    const std::vector<QuerySchema>& Queries();
    const QuerySchema* FindQuery(std::string_view name);
    // Call after any change of the schema made through this connection.
    void SchemaChanged();

    // ---- statements
    struct Prepared {
        std::shared_ptr<const jet::Translation> translation;
        StatementLease statement;  // empty for DDL
        bool cached = false;       // the translation lives in the cache
    };
    // Translates (once per shape) and prepares (once per shape, while idle)
    // a statement. Literals are bound by the caller (BindLiterals).
    Prepared Prepare(const jet::Shape& shape);
    // Prepares raw SQLite text through the same cache (the engine's own
    // statements: catalog reads, updates by rowid, find wrappers).
    StatementLease PrepareRaw(const std::string& sql);
    void BindLiterals(sqlite3_stmt* stmt, const std::vector<Variant>& literals, int offset = 0);
    static void Bind(sqlite3_stmt* stmt, int index, const Variant& value);

    // Runs raw SQLite text with no result rows; throws the mapped error.
    void ExecRaw(const std::string& sql);
    // SQLite makes its table of counter values with the first Counter column;
    // before that there is nothing to read or raise.
    bool HasCounterTable();

    // Throws the engine error that fits SQLite's failure `rc` on this
    // connection; `table` names the table written, when there was one.
    [[noreturn]] void ThrowSqlite(int rc, std::string_view table = {});

    // Steps `stmt` once; returns true for a row, false when done, throws the
    // mapped error otherwise.
    bool Step(sqlite3_stmt* stmt, std::string_view table = {});

    // ---- record sets
    // Before this connection writes, every record set still reading from a
    // live statement reads to its end, so that no read transaction of ours
    // stands in the way of the write and no new row shows up twice.
    void Register(RecordsetImpl* rs);
    void Unregister(RecordsetImpl* rs);
    void BeforeWrite();
    void CloseRecordsets();

    // ---- counters
    // Takes the next value of the Counter of `table` for a new row. Like the
    // original engine the value is used up even if the row is never saved.
    std::int64_t ReserveCounter(const TableSchema& table);

    // ---- indexes
    // Makes sure an index serves equality lookups on `column` of `table`
    // (built once and kept in the file). No effect on small tables, on a
    // read-only file, or when the index cannot be made right now.
    void EnsureLookupIndex(const std::string& table, const std::string& column);

    // What a record set learns of a cached translation's fields, kept with
    // it so that opening the same shape again costs no catalog lookups.
    std::shared_ptr<const RecordsetLayout> LayoutOf(const jet::Translation* translation) const;
    void KeepLayout(const jet::Translation* translation, std::shared_ptr<const RecordsetLayout> layout);

    // ---- statement-cache support for leases
    void ReturnStatement(std::vector<sqlite3_stmt*>* idle, sqlite3_stmt* stmt, std::uint64_t generation);

private:
    Connection() = default;
    void Configure();
    // Brings the catalog up to date; returns false when it could skip
    // asking SQLite because nothing was committed since the last look.
    bool LoadCatalog(bool verify = false);
    std::uint64_t SchemaVersion();
    std::uint64_t DataVersion();

    sqlite3* db_ = nullptr;
    std::string path_;
    bool readOnly_ = false;
    FileHolder holder_;
    bool exclusive_ = false;

    // catalog, valid for catalogVersion_
    bool catalogLoaded_ = false;
    std::int64_t catalogSchemaVersion_ = -1;
    std::uint64_t catalogDataVersion_ = 0;  // the file's commit counter when last verified
    std::vector<TableSchema> tables_;
    std::vector<QuerySchema> queries_;

    // statement cache
    struct CacheEntry {
        std::shared_ptr<const jet::Translation> translation;
        std::vector<sqlite3_stmt*> idle;
    };
    std::uint64_t generation_ = 1;  // bumped when the schema changes
    std::unordered_map<std::string, CacheEntry> cache_;
    std::unordered_map<const jet::Translation*, std::shared_ptr<const RecordsetLayout>> layouts_;
    sqlite3_stmt* schemaVersionStmt_ = nullptr;

    std::vector<RecordsetImpl*> recordsets_;  // open sets, in the order opened
    std::set<std::string> indexedColumns_;  // "table\ncolumn" already looked after
    std::map<std::string, std::uint64_t> smallTables_;  // "table\ncolumn" → data version when found small
    bool counterTableSeen_ = false;                     // SQLite's sqlite_sequence exists
};

// The application id that marks a book of ours in the SQLite header.
inline constexpr std::int32_t kApplicationId = 0x5A4C564F;  // "ZLVO"

}  // namespace zelvo::dao::detail
