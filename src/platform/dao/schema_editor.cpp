#include "platform/dao/schema_editor.h"

#include <cmath>

#include "platform/core/number_text.h"
#include "platform/dao/sql_text.h"

namespace zelvo::dao::detail {

namespace {

// The SQLite literal of a DefaultValue, or "" when it is no plain literal.
std::string DefaultLiteral(const FieldProps& f) {
    const std::string& d = f.defaultValue;
    if (d.empty()) return f.type == dbBoolean ? "0" : "";
    if (d.size() >= 2 && (d.front() == '"' || d.front() == '\'') && d.back() == d.front())
        return SqlLiteral(Variant(d.substr(1, d.size() - 2)));
    if (SameName(d, "True")) return "-1";
    if (SameName(d, "False")) return "0";
    std::optional<double> n = ParseNumber(d);
    if (!n) return "";
    if (*n == std::floor(*n) && std::fabs(*n) < 1e15) return std::to_string(static_cast<std::int64_t>(*n));
    return SqlLiteral(Variant(*n));
}

std::string ColumnSql(const FieldProps& f) {
    std::string name = QuoteName(f.name);
    std::string sql = name;
    if (f.IsCounter()) return sql + " INTEGER PRIMARY KEY AUTOINCREMENT";
    switch (f.type) {
        case dbText: case dbMemo: sql += " TEXT COLLATE JET"; break;
        case dbLongBinary: sql += " BLOB"; break;
        case dbBoolean: case dbByte: case dbInteger: case dbLong: sql += " INTEGER"; break;
        default: sql += " REAL"; break;
    }
    if (f.required) sql += " NOT NULL";
    std::string def = DefaultLiteral(f);
    if (!def.empty()) sql += " DEFAULT " + def;
    // Named after the field, so that a failure says which rule and which field.
    if (f.type == dbText && f.size > 0)
        sql += " CONSTRAINT " + QuoteName("size:" + f.name) + " CHECK (length(" + name + ") <= " +
               std::to_string(f.size) + ")";
    // By length, not by "<> ''": the column's collation passes over control
    // and zero-width characters, and a text of those is not empty.
    if (f.IsText() && !f.allowZeroLength)
        sql += " CONSTRAINT " + QuoteName("zls:" + f.name) + " CHECK (length(" + name + ") > 0)";
    return sql;
}

std::string CreateSql(const std::string& table, const std::vector<FieldProps>& fields) {
    std::string sql = "CREATE TABLE " + QuoteName(table) + " (";
    for (size_t i = 0; i < fields.size(); ++i) sql += (i ? ", " : "") + ColumnSql(fields[i]);
    return sql + ")";
}

FieldProps Normalized(FieldProps f) {
    if (f.type == dbText && f.size <= 0) f.size = 255;
    if (f.type != dbText) f.size = FixedSizeOf(f.type);
    if (f.attributes & dbAutoIncrField) f.type = dbLong;
    return f;
}

// Runs a catalog statement whose one parameter is a table or query name.
void RunForName(Connection& c, const char* sql, const std::string& name) {
    StatementLease s = c.PrepareRaw(sql);
    sqlite3_bind_text(s.get(), 1, name.c_str(), -1, SQLITE_TRANSIENT);
    c.Step(s.get());
}

void WriteCatalog(Connection& c, const std::string& table, const std::vector<FieldProps>& fields) {
    RunForName(c, "DELETE FROM MSysFields WHERE TableName = ?1", table);
    StatementLease s = c.PrepareRaw(
        "INSERT INTO MSysFields (TableName, FieldName, Position, Type, Size, Attributes, DefaultValue, "
        "Required, AllowZeroLength) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
    for (size_t i = 0; i < fields.size(); ++i) {
        const FieldProps& f = fields[i];
        sqlite3_reset(s.get());
        sqlite3_bind_text(s.get(), 1, table.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(s.get(), 2, f.name.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(s.get(), 3, static_cast<int>(i));
        sqlite3_bind_int(s.get(), 4, f.type);
        sqlite3_bind_int(s.get(), 5, f.size);
        sqlite3_bind_int(s.get(), 6, f.attributes);
        sqlite3_bind_text(s.get(), 7, f.defaultValue.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(s.get(), 8, f.required ? 1 : 0);
        sqlite3_bind_int(s.get(), 9, f.allowZeroLength ? 1 : 0);
        c.Step(s.get());
    }
}

// Runs `body` in one transaction; on failure everything is undone and the
// error goes on to the caller. Inside a transaction that a caller opened
// (a conversion of the whole book) the change is a savepoint of it, so that
// it is undone alone on failure and kept or undone with the rest otherwise.
template <class F>
void Atomically(Connection& c, F body) {
    c.BeforeWrite();
    const bool nested = sqlite3_get_autocommit(c.db()) == 0;
    c.ExecRaw(nested ? "SAVEPOINT schema_change" : "BEGIN IMMEDIATE");
    try {
        body();
        c.ExecRaw(nested ? "RELEASE schema_change" : "COMMIT");
    } catch (...) {
        if (nested) {
            sqlite3_exec(c.db(), "ROLLBACK TO schema_change", nullptr, nullptr, nullptr);
            sqlite3_exec(c.db(), "RELEASE schema_change", nullptr, nullptr, nullptr);
        } else {
            sqlite3_exec(c.db(), "ROLLBACK", nullptr, nullptr, nullptr);
        }
        c.SchemaChanged();
        throw;
    }
    c.SchemaChanged();
}

std::string ViewSql(Connection& c, const std::string& name, const std::string& jetSql);

// Unique keys are SQLite indexes named "key:<table>:<n>"; the engine's own
// lookup indexes have other names.
constexpr std::string_view kKeyPrefix = "key:";

bool IndexExists(Connection& c, const std::string& name) {
    StatementLease s = c.PrepareRaw("SELECT 1 FROM sqlite_master WHERE type = 'index' AND name = ?1");
    sqlite3_bind_text(s.get(), 1, name.c_str(), -1, SQLITE_TRANSIENT);
    return c.Step(s.get());
}

std::string FreeKeyName(Connection& c, const std::string& table) {
    for (int n = 1;; ++n) {
        std::string name = std::string(kKeyPrefix) + table + ":" + std::to_string(n);
        if (!IndexExists(c, name)) return name;
    }
}

// The indexes of `table` as SQL that makes them again, and whether each is a key.
std::vector<std::pair<std::string, bool>> IndexesOf(Connection& c, const std::string& table) {
    std::vector<std::pair<std::string, bool>> out;
    StatementLease s = c.PrepareRaw(
        "SELECT name, sql FROM sqlite_master WHERE type = 'index' AND tbl_name = ?1 AND sql IS NOT NULL");
    sqlite3_bind_text(s.get(), 1, table.c_str(), -1, SQLITE_TRANSIENT);
    while (c.Step(s.get())) {
        std::string name = reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0));
        out.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 1)),
                         name.compare(0, kKeyPrefix.size(), kKeyPrefix) == 0);
    }
    return out;
}

// True when `field` of `table` is part of a unique key.
bool InKey(Connection& c, const std::string& table, const std::string& field) {
    StatementLease s = c.PrepareRaw(
        "SELECT ii.name FROM sqlite_master m, pragma_index_info(m.name) ii "
        "WHERE m.type = 'index' AND m.tbl_name = ?1 AND substr(m.name, 1, 4) = 'key:'");
    sqlite3_bind_text(s.get(), 1, table.c_str(), -1, SQLITE_TRANSIENT);
    while (c.Step(s.get()))
        if (SameName(reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0)), field)) return true;
    return false;
}

// SQLite holds every table and column a view names: it refuses to rename or
// drop them, or rewrites the view's text. A saved query is checked only when
// it runs and keeps its text as written. So a change of structure takes the
// views of the saved queries down first and afterwards puts back each one
// whose text still fits the book; the others stay as text alone until the
// book fits them again, and fail only when they are used.
void DropQueryViews(Connection& c) {
    std::vector<std::string> views;
    {
        StatementLease s = c.PrepareRaw("SELECT name FROM sqlite_master WHERE type = 'view'");
        while (c.Step(s.get())) views.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0)));
    }
    for (const auto& v : views) c.ExecRaw("DROP VIEW " + QuoteName(v));
}

void RestoreQueryViews(Connection& c) {
    std::vector<std::pair<std::string, std::string>> waiting;  // name, Jet text
    {
        StatementLease s = c.PrepareRaw("SELECT Name, SQL FROM MSysQueries ORDER BY rowid");
        while (c.Step(s.get()))
            waiting.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0)),
                                 reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 1)));
    }
    // A query may be built on another: go round until a pass makes no view.
    for (bool progress = true; progress && !waiting.empty();) {
        progress = false;
        c.SchemaChanged();
        for (auto it = waiting.begin(); it != waiting.end();) {
            std::string view;
            try {
                view = ViewSql(c, it->first, it->second);
            } catch (const Error&) {
                ++it;
                continue;
            }
            c.ExecRaw(view);
            c.SchemaChanged();
            it = waiting.erase(it);
            progress = true;
        }
    }
}

// Atomically, with the saved queries' views out of the way of the change.
template <class F>
void ChangeStructure(Connection& c, F body) {
    Atomically(c, [&] {
        DropQueryViews(c);
        body();
        RestoreQueryViews(c);
    });
}

bool NameTaken(Connection& c, const std::string& name) {
    return c.FindTable(name) != nullptr || c.FindQuery(name) != nullptr;
}

const TableSchema& RequireTable(Connection& c, const std::string& name) {
    const TableSchema* t = c.FindTable(name);
    if (!t) throw DaoError(kItemNotFound);
    return *t;
}

// Makes `table` anew with `fields`; `sourceOf[i]` names the old column whose
// values field i takes ("" for none).
void Rebuild(Connection& c, const TableSchema& old, std::vector<FieldProps> fields,
             const std::vector<std::string>& sourceOf) {
    const std::string table = old.name;
    const std::string temp = "~rebuild " + table;
    ChangeStructure(c, [&] {
        std::int64_t sequence = -1;
        if (c.HasCounterTable()) {
            StatementLease s = c.PrepareRaw("SELECT seq FROM sqlite_sequence WHERE name = ?1");
            sqlite3_bind_text(s.get(), 1, table.c_str(), -1, SQLITE_TRANSIENT);
            if (c.Step(s.get())) sequence = sqlite3_column_int64(s.get(), 0);
        }
        c.ExecRaw("PRAGMA legacy_alter_table = ON");
        c.ExecRaw(CreateSql(temp, fields));
        std::string to, from;
        for (size_t i = 0; i < fields.size(); ++i) {
            // A new field's DefaultValue is for rows added from now on: the
            // rows already there stay Null in it, as in Jet. (A Required
            // one takes the default, or SQLite would refuse the copy.)
            if (sourceOf[i].empty() && (fields[i].IsCounter() || fields[i].required)) continue;
            to += (to.empty() ? "" : ", ") + QuoteName(fields[i].name);
            from += (from.empty() ? "" : ", ") + (sourceOf[i].empty() ? "NULL" : QuoteName(sourceOf[i]));
        }
        // Rows keep their rowids, which open record sets (here and in other
        // connections) hold as keys; a Counter is the rowid itself, and a new
        // one numbers the rows in their order.
        bool counter = false;
        for (const auto& f : fields) counter = counter || f.IsCounter();
        if (!counter && !to.empty()) {
            to = "rowid, " + to;
            from = "rowid, " + from;
        }
        if (!to.empty())
            c.ExecRaw("INSERT INTO " + QuoteName(temp) + " (" + to + ") SELECT " + from + " FROM " +
                      QuoteName(table) + " ORDER BY rowid");
        std::vector<std::pair<std::string, bool>> indexes = IndexesOf(c, table);
        c.ExecRaw("DROP TABLE " + QuoteName(table));
        c.ExecRaw("ALTER TABLE " + QuoteName(temp) + " RENAME TO " + QuoteName(table));
        c.ExecRaw("PRAGMA legacy_alter_table = OFF");
        // Keys stay; a lookup index on a field that is gone goes with it.
        for (const auto& [sql, key] : indexes) {
            if (key) c.ExecRaw(sql);
            else sqlite3_exec(c.db(), sql.c_str(), nullptr, nullptr, nullptr);
        }
        // A Counter keeps counting from where it was: numbers are never given twice.
        if (sequence >= 0) {
            StatementLease s = c.PrepareRaw("UPDATE sqlite_sequence SET seq = max(seq, ?2) WHERE name = ?1");
            sqlite3_bind_text(s.get(), 1, table.c_str(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_int64(s.get(), 2, sequence);
            c.Step(s.get());
        }
        WriteCatalog(c, table, fields);
    });
}

}  // namespace

void CreateTable(Connection& c, const std::string& name, const std::vector<FieldProps>& fieldsIn,
                 const std::vector<std::vector<std::string>>& keys) {
    if (NameTaken(c, name)) throw DaoError(kTableExists, name);
    if (fieldsIn.empty()) throw Error(kNoFieldDefined, DaoErrorText(kNoFieldDefined), "DAO.TableDefs");
    std::vector<FieldProps> fields;
    for (const auto& f : fieldsIn) {
        for (const auto& g : fields)
            if (SameName(g.name, f.name)) throw DaoError(kFieldExists, f.name, name);
        fields.push_back(Normalized(f));
    }
    ChangeStructure(c, [&] {
        c.ExecRaw(CreateSql(name, fields));
        for (const auto& key : keys) {
            std::string cols;
            for (const auto& k : key) cols += (cols.empty() ? "" : ", ") + QuoteName(k);
            c.ExecRaw("CREATE UNIQUE INDEX " + QuoteName(FreeKeyName(c, name)) + " ON " + QuoteName(name) + " (" +
                      cols + ")");
        }
        WriteCatalog(c, name, fields);
    });
}

void DropTable(Connection& c, const std::string& name) {
    const TableSchema& t = RequireTable(c, name);
    std::string table = t.name;
    ChangeStructure(c, [&] {
        c.ExecRaw("DROP TABLE " + QuoteName(table));
        RunForName(c, "DELETE FROM MSysFields WHERE TableName = ?1", table);
    });
}

void RenameTable(Connection& c, const std::string& from, const std::string& to) {
    const TableSchema& t = RequireTable(c, from);
    if (!SameName(from, to) && NameTaken(c, to)) throw DaoError(kTableExists, to);
    std::string table = t.name;
    ChangeStructure(c, [&] {
        c.ExecRaw("ALTER TABLE " + QuoteName(table) + " RENAME TO " + QuoteName(to));
        StatementLease u = c.PrepareRaw("UPDATE MSysFields SET TableName = ?2 WHERE TableName = ?1");
        sqlite3_bind_text(u.get(), 1, table.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(u.get(), 2, to.c_str(), -1, SQLITE_TRANSIENT);
        c.Step(u.get());
    });
}

void AddField(Connection& c, const std::string& table, const FieldProps& field) {
    TableSchema t = RequireTable(c, table);
    if (t.Find(field.name)) throw DaoError(kFieldExists, field.name, t.name);
    FieldProps f = Normalized(field);
    if (f.IsCounter() && t.Counter())
        throw Error(kTooManyCounters, DaoErrorText(kTooManyCounters), "DAO.Fields");
    std::vector<FieldProps> fields = t.fields;
    std::vector<std::string> sources;
    for (const auto& g : t.fields) sources.push_back(g.name);
    fields.push_back(f);
    sources.emplace_back();
    Rebuild(c, t, fields, sources);
}

void DropField(Connection& c, const std::string& table, const std::string& field) {
    TableSchema t = RequireTable(c, table);
    int at = t.IndexOf(field);
    if (at < 0) throw DaoError(kItemNotFound);
    if (t.fields.size() == 1 || InKey(c, t.name, t.fields[static_cast<size_t>(at)].name))
        throw DaoError(kFieldInIndex);
    std::vector<FieldProps> fields;
    std::vector<std::string> sources;
    for (size_t i = 0; i < t.fields.size(); ++i) {
        if (static_cast<int>(i) == at) continue;
        fields.push_back(t.fields[i]);
        sources.push_back(t.fields[i].name);
    }
    Rebuild(c, t, fields, sources);
}

void AlterField(Connection& c, const std::string& table, const std::string& field, const FieldProps& props) {
    TableSchema t = RequireTable(c, table);
    int at = t.IndexOf(field);
    if (at < 0) throw DaoError(kItemNotFound);
    FieldProps f = Normalized(props);
    const FieldProps& old = t.fields[static_cast<size_t>(at)];
    if (!SameName(old.name, f.name) && t.Find(f.name)) throw DaoError(kFieldExists, f.name, t.name);
    FieldProps renamedOnly = old;
    renamedOnly.name = f.name;
    if (renamedOnly.type == f.type && renamedOnly.size == f.size && renamedOnly.attributes == f.attributes &&
        renamedOnly.defaultValue == f.defaultValue && renamedOnly.required == f.required &&
        renamedOnly.allowZeroLength == f.allowZeroLength) {
        if (old.name == f.name) return;
        // A new name alone: SQLite renames in place.
        std::string tableName = t.name;
        ChangeStructure(c, [&] {
            c.ExecRaw("ALTER TABLE " + QuoteName(tableName) + " RENAME COLUMN " + QuoteName(old.name) + " TO " +
                      QuoteName(f.name));
            t.fields[static_cast<size_t>(at)].name = f.name;
            WriteCatalog(c, tableName, t.fields);
        });
        return;
    }
    std::vector<FieldProps> fields = t.fields;
    std::vector<std::string> sources;
    for (const auto& g : t.fields) sources.push_back(g.name);
    fields[static_cast<size_t>(at)] = f;
    Rebuild(c, t, fields, sources);
}

// ------------------------------------------------------------ saved queries

namespace {

// The view that stands for a saved query: its visible columns only.
std::string ViewSql(Connection& c, const std::string& name, const std::string& jetSql) {
    jet::Shape shape = jet::Parameterize(jetSql);
    jet::Translation tr = jet::TranslateStatement(shape, c);
    if (tr.kind != jet::StatementKind::Select) throw DaoError(kInvalidOperation);
    std::string cols;
    for (size_t i = 0; i < tr.columns.size(); ++i) cols += (i ? ", " : "") + QuoteName(tr.columns[i].name);
    return "CREATE VIEW " + QuoteName(name) + " AS SELECT " + cols + " FROM (" +
           InlineParameters(tr.sql, shape.literals) + ")";
}

// Saves `jetSql` as the text of the saved query `stored` (made when there
// is none) under the name `name`; the query keeps its place in the order.
void WriteQuery(Connection& c, const std::string& stored, const std::string& name, const std::string& jetSql) {
    StatementLease u = c.PrepareRaw("UPDATE MSysQueries SET Name = ?2, SQL = ?3 WHERE Name = ?1");
    sqlite3_bind_text(u.get(), 1, stored.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(u.get(), 2, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(u.get(), 3, jetSql.c_str(), -1, SQLITE_TRANSIENT);
    c.Step(u.get());
    if (sqlite3_changes(c.db()) > 0) return;
    StatementLease s = c.PrepareRaw("INSERT INTO MSysQueries (Name, SQL) VALUES (?1, ?2)");
    sqlite3_bind_text(s.get(), 1, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(s.get(), 2, jetSql.c_str(), -1, SQLITE_TRANSIENT);
    c.Step(s.get());
}

// A text with a syntax error, or no SELECT, is refused when it is saved; one
// that names a table or field the book lacks is saved all the same and
// fails when it is used.
void CheckQueryText(Connection& c, const std::string& name, const std::string& jetSql) {
    try {
        ViewSql(c, name, jetSql);
    } catch (const Error& e) {
        if (e.number() != kInputTableNotFound && e.number() != kTooFewParameters) throw;
    }
}

const QuerySchema& RequireQuery(Connection& c, const std::string& name) {
    const QuerySchema* q = c.FindQuery(name);
    if (!q) throw DaoError(kItemNotFound);
    return *q;
}

}  // namespace

void CreateQuery(Connection& c, const std::string& name, const std::string& jetSql) {
    if (NameTaken(c, name)) throw DaoError(kObjectExists, name);
    CheckQueryText(c, name, jetSql);
    ChangeStructure(c, [&] { WriteQuery(c, name, name, jetSql); });
}

void SetQuerySql(Connection& c, const std::string& name, const std::string& jetSql) {
    std::string stored = RequireQuery(c, name).name;
    CheckQueryText(c, stored, jetSql);
    ChangeStructure(c, [&] { WriteQuery(c, stored, stored, jetSql); });
}

void DropQuery(Connection& c, const std::string& name) {
    std::string stored = RequireQuery(c, name).name;
    ChangeStructure(c, [&] { RunForName(c, "DELETE FROM MSysQueries WHERE Name = ?1", stored); });
}

void RenameQuery(Connection& c, const std::string& from, const std::string& to) {
    const QuerySchema& q = RequireQuery(c, from);
    if (!SameName(from, to) && NameTaken(c, to)) throw DaoError(kObjectExists, to);
    std::string stored = q.name, sql = q.sql;
    ChangeStructure(c, [&] { WriteQuery(c, stored, to, sql); });
}

}  // namespace zelvo::dao::detail
