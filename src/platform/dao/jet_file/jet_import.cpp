#include "platform/dao/jet_file/jet_import.h"

#include <filesystem>

#include "platform/core/error.h"
#include "platform/dao/connection.h"
#include "platform/dao/dbengine.h"
#include "platform/dao/jet_file/jet_file_reader.h"

namespace zelvo::dao::jetfile {

namespace {

// The error `e` with where it happened in front of its description, so that
// a person can find the table or row in the old file.
Error At(const Error& e, const std::string& where) {
    return Error(e.number(), where + ": " + e.description(), e.source());
}

void MakeTable(const Database& db, const JetTable& t) {
    TableDef td = db.CreateTableDef(t.name);
    for (const JetColumn& c : t.columns) {
        Field f = c.type == dbText ? td.CreateField(c.name, c.type, c.size) : td.CreateField(c.name, c.type);
        if (c.counter) f.SetAttributes(dbAutoIncrField);
        // libmdb reads an empty text as Null; a column that allowed empty
        // texts must not refuse what comes of them.
        if (c.type == dbText || c.type == dbMemo) f.SetAllowZeroLength(true);
        td.Fields().Append(f);
    }
    db.TableDefs().Append(td);
}

void CopyRows(detail::Connection& c, JetFileReader& reader, size_t index) {
    const JetTable& t = reader.Tables()[index];
    if (t.columns.empty()) return;
    std::string sql = "INSERT INTO " + detail::QuoteName(t.name) + " (";
    std::string params;
    for (size_t i = 0; i < t.columns.size(); ++i) {
        sql += (i ? ", " : "") + detail::QuoteName(t.columns[i].name);
        params += (i ? ", ?" : "?") + std::to_string(i + 1);
    }
    sql += ") VALUES (" + params + ")";
    detail::StatementLease insert = c.PrepareRaw(sql);
    long row = 0;
    reader.ReadRows(index, [&](const std::vector<Variant>& values) {
        ++row;
        sqlite3_stmt* st = insert.get();
        sqlite3_reset(st);
        for (size_t i = 0; i < values.size(); ++i) detail::Connection::Bind(st, static_cast<int>(i + 1), values[i]);
        try {
            c.Step(st, t.name);
        } catch (const Error& e) {
            throw At(e, "table '" + t.name + "', row " + std::to_string(row));
        }
    });
}

void RemoveBook(const std::string& path) {
    std::error_code ec;
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) std::filesystem::remove(path + suffix, ec);
}

}  // namespace

void ImportJetFile(const std::string& source, const std::string& destination) {
    JetFileReader reader = JetFileReader::Open(source);
    Database db = Engine().CreateDatabase(destination);
    try {
        // One transaction for the tables and all rows: far faster than one a
        // table and row (each would wait for the disk), and a conversion cut
        // off leaves an empty book rather than part of one.
        detail::Connection& c = *db.connection();
        c.ExecRaw("BEGIN IMMEDIATE");
        for (const JetTable& t : reader.Tables()) {
            try {
                MakeTable(db, t);
            } catch (const Error& e) {
                throw At(e, "table '" + t.name + "'");
            }
        }
        for (size_t i = 0; i < reader.Tables().size(); ++i) CopyRows(c, reader, i);
        c.ExecRaw("COMMIT");
        c.SchemaChanged();
        db.Close();
    } catch (const Error& e) {
        db = Database();  // the last holder goes: SQLite rolls back and closes
        RemoveBook(destination);
        throw At(e, "Converting '" + source + "'");
    } catch (...) {
        db = Database();
        RemoveBook(destination);
        throw;
    }
}

}  // namespace zelvo::dao::jetfile
