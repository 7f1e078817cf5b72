// zelvo sql: runs one statement of the book's own SQL dialect (Jet SQL) and
// prints the rows — a console to look inside a book, for people and tests.
#include <algorithm>
#include <filesystem>
#include <iostream>

#include "command.h"
#include "json_writer.h"
#include "platform/core/error.h"
#include "platform/dao/dbengine.h"
#include "store/library_state.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kUsage =
    "Usage: zelvo sql [--db FILE] [--create] [--json] \"STATEMENT\"\n"
    "       zelvo sql [--db FILE] --tables [--json]\n"
    "\n"
    "Runs one statement of the book's SQL dialect and prints what it gives.\n"
    "The dialect is the one the address book's own code speaks: texts in\n"
    "double quotes (\"\" for a quote inside), [bracketed names] with blanks,\n"
    "True/False, & to join texts, Like with * ? # [..], Instr, Mid$, IIf.\n"
    "Texts compare without regard to case, in every alphabet.\n"
    "\n"
    "A Select prints its rows; any other statement (Insert, Update, Delete,\n"
    "Create Table, Alter Table, Drop Table) prints how many rows it touched.\n"
    "\n"
    "Options:\n"
    "  --db FILE   the book (default: AddressBookW.mdb in the application\n"
    "              folder given by --app-path, else in $XDG_DATA_HOME/zelvo)\n"
    "  --create    make an empty book when FILE does not exist\n"
    "  --json      print one JSON object: {\"fields\": [...], \"rows\": [[...], ...]}\n"
    "  --tables    list the tables and saved queries with their fields\n"
    "\n"
    "Examples:\n"
    "  zelvo sql --db b.mdb --create \"Create Table People (Name Text(50), Born Long)\"\n"
    "  zelvo sql --db b.mdb \"Insert Into People (Name, Born) Values (\\\"Ана\\\", 1990)\"\n"
    "  zelvo sql --db b.mdb \"Select * From People Where Name Like \\\"а*\\\"\"\n"
    "\n"
    "Exit status: 0 done, 1 the statement failed (the engine's error number and\n"
    "text are printed), 2 bad usage.\n";

// Display width of a UTF-8 text, counted in characters.
size_t Width(const std::string& s) {
    size_t n = 0;
    for (unsigned char c : s)
        if ((c & 0xC0) != 0x80) ++n;
    return n;
}

std::string Cell(const Variant& v) {
    if (v.IsNull()) return "Null";
    if (v.kind() == Variant::Kind::Bytes) return "<" + std::to_string(v.bytes().size()) + " bytes>";
    return v.AsText();
}

void PrintTable(const std::vector<std::string>& header, const std::vector<std::vector<std::string>>& rows) {
    std::vector<size_t> widths(header.size());
    for (size_t i = 0; i < header.size(); ++i) widths[i] = Width(header[i]);
    for (const auto& r : rows)
        for (size_t i = 0; i < r.size(); ++i) widths[i] = std::max(widths[i], Width(r[i]));
    auto line = [&](const std::vector<std::string>& cells) {
        for (size_t i = 0; i < cells.size(); ++i) {
            std::cout << cells[i];
            if (i + 1 < cells.size()) std::cout << std::string(widths[i] - Width(cells[i]) + 2, ' ');
        }
        std::cout << "\n";
    };
    line(header);
    std::vector<std::string> rule;
    for (size_t w : widths) rule.push_back(std::string(w, '-'));
    line(rule);
    for (const auto& r : rows) line(r);
    std::cout << "(" << rows.size() << (rows.size() == 1 ? " row)\n" : " rows)\n");
}

const char* TypeName(int type, int attributes) {
    if (attributes & dao::dbAutoIncrField) return "Counter";
    switch (type) {
        case dao::dbBoolean: return "Yes/No";
        case dao::dbByte: return "Byte";
        case dao::dbInteger: return "Integer";
        case dao::dbLong: return "Long";
        case dao::dbDouble: return "Double";
        case dao::dbDate: return "Date";
        case dao::dbText: return "Text";
        case dao::dbLongBinary: return "Long Binary";
        case dao::dbMemo: return "Memo";
        default: return "Other";
    }
}

int ListTables(const dao::Database& db, bool json) {
    auto tables = db.TableDefs();
    auto queries = db.QueryDefs();
    if (json) {
        std::cout << "{\"tables\": [";
        for (int i = 0; i < tables.Count(); ++i) {
            auto t = tables.Item(i);
            std::cout << (i ? ", " : "") << "{\"name\": " << JsonString(t.Name()) << ", \"fields\": [";
            auto fields = t.Fields();
            for (int j = 0; j < fields.Count(); ++j) {
                auto f = fields.Item(j);
                std::cout << (j ? ", " : "") << "{\"name\": " << JsonString(f.Name()) << ", \"type\": " << f.Type()
                          << ", \"size\": " << f.Size() << ", \"attributes\": " << f.Attributes()
                          << ", \"defaultValue\": " << JsonString(f.DefaultValue())
                          << ", \"required\": " << (f.Required() ? "true" : "false")
                          << ", \"allowZeroLength\": " << (f.AllowZeroLength() ? "true" : "false") << "}";
            }
            std::cout << "]}";
        }
        std::cout << "], \"queries\": [";
        for (int i = 0; i < queries.Count(); ++i) {
            auto q = queries.Item(i);
            std::cout << (i ? ", " : "") << "{\"name\": " << JsonString(q.Name()) << ", \"sql\": " << JsonString(q.SQL())
                      << "}";
        }
        std::cout << "]}\n";
        return kExitOk;
    }
    for (int i = 0; i < tables.Count(); ++i) {
        auto t = tables.Item(i);
        std::cout << t.Name() << "\n";
        auto fields = t.Fields();
        size_t width = 0;
        for (int j = 0; j < fields.Count(); ++j) width = std::max(width, fields.Item(j).Name().size());
        for (int j = 0; j < fields.Count(); ++j) {
            auto f = fields.Item(j);
            std::cout << "  " << f.Name() << std::string(width - f.Name().size(), ' ') << "  "
                      << TypeName(f.Type(), f.Attributes());
            if (f.Type() == dao::dbText) std::cout << "(" << f.Size() << ")";
            if (!f.DefaultValue().empty()) std::cout << "  default " << f.DefaultValue();
            if (f.Required()) std::cout << "  required";
            if (f.Type() == dao::dbText && f.AllowZeroLength()) std::cout << "  zero-length allowed";
            std::cout << "\n";
        }
    }
    for (int i = 0; i < queries.Count(); ++i) {
        auto q = queries.Item(i);
        std::cout << q.Name() << " (saved query)\n  " << q.SQL() << "\n";
    }
    return kExitOk;
}

int RunSql(std::span<const std::string> args) {
    std::string db;
    bool create = false, json = false, tables = false, dbGiven = false;
    std::string statement;
    bool haveStatement = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--db") {
            if (i + 1 >= args.size()) return UsageError("sql", "--db needs a file");
            db = args[++i];
            dbGiven = true;
        } else if (a == "--app-path") {
            // The book of that application folder, unless --db names one.
            if (i + 1 >= args.size()) return UsageError("sql", "--app-path needs a folder");
            Host().appPath = args[++i];
        } else if (a == "--create") {
            create = true;
        } else if (a == "--json") {
            json = true;
        } else if (a == "--tables") {
            tables = true;
        } else if (a.rfind("--", 0) == 0 && a.size() > 2) {
            return UsageError("sql", "unknown option '" + a + "'");
        } else if (!haveStatement) {
            statement = a;
            haveStatement = true;
        } else {
            return UsageError("sql", "give the statement as one argument (put it in quotes)");
        }
    }
    if (!dbGiven) db = HostAppPath() + "/" + kDatabaseFileName;
    if (!haveStatement && !tables) return UsageError("sql", "no statement given");

    try {
        dao::Database book;
        std::error_code ec;
        if (create && !std::filesystem::exists(db, ec)) {
            std::filesystem::path folder = std::filesystem::path(db).parent_path();
            if (!folder.empty()) std::filesystem::create_directories(folder, ec);
            book = dao::Engine().CreateDatabase(db);
        } else {
            book = dao::Engine().OpenDatabase(db);
        }
        if (tables) return ListTables(book, json);

        std::string_view s = statement;
        size_t start = s.find_first_not_of(" \t\r\n(");
        std::string first;
        for (size_t i = start; i != std::string_view::npos && i < s.size() && std::isalpha(static_cast<unsigned char>(s[i])); ++i)
            first += static_cast<char>(std::tolower(static_cast<unsigned char>(s[i])));
        if (first != "select") {
            book.Execute(statement);
            if (json) std::cout << "{\"recordsAffected\": " << book.RecordsAffected() << "}\n";
            else std::cout << book.RecordsAffected() << (book.RecordsAffected() == 1 ? " row" : " rows") << " affected.\n";
            return kExitOk;
        }

        dao::Recordset rs = book.OpenRecordset(statement, dao::dbOpenSnapshot);
        auto fields = rs.Fields();
        std::vector<std::string> header;
        for (int i = 0; i < fields.Count(); ++i) header.push_back(fields.Item(i).Name());
        if (json) {
            std::cout << "{\"fields\": [";
            for (size_t i = 0; i < header.size(); ++i) std::cout << (i ? ", " : "") << JsonString(header[i]);
            std::cout << "], \"rows\": [";
            bool firstRow = true;
            for (; !rs.IsEOF(); rs.MoveNext()) {
                std::cout << (firstRow ? "" : ", ") << "[";
                for (int i = 0; i < fields.Count(); ++i) std::cout << (i ? ", " : "") << JsonValue(rs.Value(i));
                std::cout << "]";
                firstRow = false;
            }
            std::cout << "]}\n";
            return kExitOk;
        }
        std::vector<std::vector<std::string>> rows;
        for (; !rs.IsEOF(); rs.MoveNext()) {
            std::vector<std::string> r;
            for (int i = 0; i < fields.Count(); ++i) r.push_back(Cell(rs.Value(i)));
            rows.push_back(std::move(r));
        }
        PrintTable(header, rows);
        return kExitOk;
    } catch (const Error& e) {
        std::cerr << "zelvo sql: error " << e.number() << ": " << e.description() << "\n";
        return kExitFailure;
    }
}

}  // namespace

extern const Command kSqlCommand{"sql", "run one statement of the book's SQL and print the rows", kUsage, RunSql};

}  // namespace zelvo::cli
