// Jet SQL → SQLite SQL.
//
// The book's code builds Jet SQL texts by concatenation: double-quoted
// literals, [bracketed names] with blanks, True/False, &, Instr, Mid$, IIf,
// Asc, Like with * ? # [..], Distinctrow, comma joins and nested INNER/LEFT/
// RIGHT joins, saved queries used as tables, Jet's DDL type names. This module
// parses such a text (a real lexer and recursive-descent parser, not string
// patching) and writes the SQLite statement that gives the same rows.
//
// Two steps, so that a statement run many times with different literals is
// translated and prepared once:
//
//   1. `Parameterize` lexes the text and lifts every string and number
//      literal out of it. Texts that differ only in their literals give the
//      same `Shape::key`.
//   2. `TranslateStatement` / `TranslateCriteria` turn a shape into SQLite
//      SQL in which literal i (0-based) of the shape is the parameter ?(i+1).
//      A translation may write a literal into the text instead (a Text(50)
//      size, say); it then says so in `cacheable`.
//
// Names are resolved against a `Catalog` (tables and saved queries with their
// columns), as Jet does: an unknown table or query is error 3078, an unknown
// column name becomes a parameter and the statement fails with 3061 "Too few
// parameters. Expected n." (n counts the distinct unknown names), a bare
// column name found in two sources is 3079. Syntax errors are 3075 (in an
// expression, with the clause's text), 3131 (FROM clause), 3134 (INSERT),
// 3144 (UPDATE), 3138 (ORDER BY), 3141 (select list), 3142 (text after the
// end), 3290/3293/3295 (CREATE/ALTER/DROP); a text that is no statement at
// all is 3129; an undefined function 3085. Writing through a saved query or
// an Update over a join is 3073, a Delete over a join 3086. Nesting deeper
// than a few hundred levels is refused with 3360 rather than risking the
// stack.
//
// The SQLite text the translator writes needs the runtime of
// RegisterJetRuntime on the connection and DQS switched off. Text compares
// carry COLLATE JET wherever neither side is a column (a column brings the
// collation it was declared with); number compares never do, so indexes on
// Long columns stay usable.
//
// The implementation: lexer.cpp (Parameterize, tokens), parser.cpp (the
// tree of ast.h), expr_writer.cpp, select_writer.cpp, statement_writer.cpp
// and criteria.cpp (SQLite text), ddl_types.cpp, and the runtime in
// functions.cpp, collation.cpp, like.cpp, text_util.cpp, bind.cpp.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/variant.h"

struct sqlite3;
struct sqlite3_stmt;

namespace zelvo::dao::jet {

// ---------------------------------------------------------------- catalog

// A table or saved query as the translator needs to know it.
struct CatalogObject {
    std::string name;                  // as stored (its case)
    bool isQuery = false;              // a saved query: a view, without rowid
    std::vector<std::string> columns;  // in their order
};

class Catalog {
public:
    virtual ~Catalog() = default;
    // The table or saved query of that name, compared without regard to case.
    virtual std::optional<CatalogObject> Find(std::string_view name) const = 0;
};

// ---------------------------------------------------------------- shapes

struct Shape {
    std::string key;                // the text with literals replaced; equal keys translate alike
    std::vector<Variant> literals;  // string literals as Text, numbers as Integer or Double
};

// Lexes `jetSql`. Throws zelvo::Error 3075 for an unterminated literal or
// bracket. String literals may be written "…" or '…' (the delimiter doubled
// inside stands for itself) or #…# (kept as text); a number literal is an
// unsigned decimal (a minus sign stays in the key as an operator). In the
// key a string literal is the byte 0x01 and a number literal the byte 0x02.
// One pass, one allocation for the key: this is what every execution pays.
Shape Parameterize(std::string_view jetSql);

// ---------------------------------------------------------------- statements

enum class StatementKind { Select, Insert, Update, Delete, CreateTable, AlterTable, DropTable };

// One column of a SELECT's result, in order.
struct OutputColumn {
    std::string name;          // the field's name as DAO gives it: alias, bare name, or
                               // "Table.Field" where the bare name would be ambiguous;
                               // "Expr1000", "Expr1001", … for unnamed expressions
    int source = -1;           // index into Translation::sources, or -1 for an expression
    std::string sourceColumn;  // the column's name in that source (its stored case)
};

// A table or saved query of the FROM list.
struct Source {
    std::string name;   // table or query name, as stored
    std::string alias;  // the alias, or the name as written in the FROM clause
    bool isQuery = false;
    // True when the result carries this table's rowid as the hidden column
    // "__rowid<k>" (k = this source's index); see Translation::hiddenRowids.
    // Never for a saved query.
    bool hasRowid = false;
};

// A column definition of CREATE TABLE or ALTER TABLE … ADD/ALTER COLUMN.
struct ColumnDef {
    std::string name;
    int type = 10;      // DAO type code: 1 Yes/No, 4 Long, 10 Text, 11 Long Binary, 12 Memo,
                        // 7 Double, 8 Date, 3 Integer, 2 Byte …
    int size = 0;       // Text(n): n; Text without size: 255
    bool counter = false;  // COUNTER / AUTOINCREMENT: a Long with attribute 16
    bool notNull = false;     // NOT NULL (also set by PRIMARY KEY)
    bool primaryKey = false;  // PRIMARY KEY written on the column
    bool unique = false;      // UNIQUE written on the column
};

struct Translation {
    StatementKind kind = StatementKind::Select;
    // SQLite text (empty for DDL: the engine runs DDL itself). Literal i is
    // the parameter ?(i+1); a literal written into the text (Top n) has no
    // parameter, so bind only indexes up to sqlite3_bind_parameter_count.
    // Names are in double quotes; run it with DQS switched off.
    std::string sql;
    bool cacheable = true;   // false when a literal was written into `sql` or `columnDefs`

    // Select only.
    bool distinct = false;            // Select Distinct: the result is read-only
    bool commaJoin = false;           // FROM a, b (no JOIN): read-only as well
    std::vector<OutputColumn> columns;
    std::vector<Source> sources;
    // Hidden columns after the visible ones: for each source with hasRowid,
    // in the order of `sources`, "<alias>".rowid AS "__rowid<k>", k being the
    // source's index in `sources`. None for Distinct and aggregate queries.
    // A table inside a parenthesised outer join on the right of another join
    // (which SQLite nests as a subquery) has none either: its fields of the
    // result are then read-only.
    int hiddenRowids = 0;
    // Fields of tables compared by "=" with a literal in the top-level
    // conjunction of WHERE ("[Owner ID]=5 And [OwnerType]=0"): the engine
    // may index them, since the book declares no index of its own.
    struct LookupColumn {
        int source = -1;     // index in `sources` (never a saved query)
        std::string column;  // its stored name
    };
    std::vector<LookupColumn> lookupColumns;
    // Fields of two tables that a JOIN's ON condition sets equal
    // ("A.[ID] = B.[A ID]", in its top-level conjunction): a row added on
    // the Null side of an outer join takes the other side's value, as Jet
    // fills in the blank.
    struct JoinLink {
        LookupColumn a, b;
    };
    std::vector<JoinLink> joinLinks;

    // Insert / Update / Delete: the table written.
    std::string table;

    // DDL.
    std::vector<ColumnDef> columnDefs;  // Create Table: all; Alter Table Add/Alter: the one
    // Create Table: the keys whose values must be unique, written on a
    // column (PRIMARY KEY, UNIQUE) or as a CONSTRAINT item; names as stored
    // in columnDefs. The columns of a primary key are also NOT NULL.
    struct Key {
        bool primary = false;
        std::vector<std::string> columns;
    };
    std::vector<Key> keys;
    enum class AlterAction { None, AddColumn, DropColumn, AlterColumn } alter = AlterAction::None;
    std::string dropColumn;             // Alter Table … Drop Column
};

// Translates one statement. Throws zelvo::Error with the numbers listed at
// the top of this file.
Translation TranslateStatement(const Shape& shape, const Catalog& catalog);

// A saved query's SELECT as the body of an SQLite view: as
// TranslateStatement, but the literals are written into the text as SQLite
// literals (a view takes no parameters) and there are no hidden rowid
// columns. The output names are the DAO names, so "CREATE VIEW "<name>" AS "
// + sql gives a view whose columns are named as Jet names the query's
// fields. Throws 3129 for anything but a SELECT, and as TranslateStatement.
Translation TranslateView(const Shape& shape, const Catalog& catalog);

// A criteria string of FindFirst/FindNext/…: a WHERE clause without WHERE,
// over the fields of an open record set named `fields` (its OutputColumn
// names; a reference may be bare, bracketed, or "Table.Field" / "[T].[F]").
struct CriteriaTranslation {
    // SQLite boolean expression in which field i of the record set is the
    // column "f<i>" of the row source the engine wraps around the query; the
    // literals are parameters ?(i+1) as in statements.
    std::string sql;
    bool cacheable = true;
    // The fields compared by "=" with a literal in the top-level conjunction
    // (e.g. "[A]=1 And [B]=\"x\""): the engine may index them.
    std::vector<int> equalityFields;
};

// Throws 3075 for a syntax error, and 3070 ("… does not recognize '<name>'
// as a valid field name or expression.") for a name that is no field of the
// record set: that is what DAO's Find methods raise, not 3061.


CriteriaTranslation TranslateCriteria(const Shape& shape, const std::vector<std::string>& fields);

// ---------------------------------------------------------------- runtime

// The collation every Text column is declared with: compares and orders
// without regard to case across all of Unicode (ICU, secondary strength),
// "ИВАНОВ" = "иванов". Its name in SQL is "JET".
inline constexpr const char* kCollation = "JET";

// Registers on `db` everything the translated SQL calls: the collation, and
// the functions jet_concat (the & operator: one Null side counts as ""),
// jet_instr, jet_mid, jet_left, jet_right, jet_len, jet_asc, jet_chr, jet_ucase,
// jet_lcase, jet_trim…, jet_like (Jet's Like: * ? # [list] [!list], case-
// insensitive across Unicode), jet_iif and the others the translator emits.
// Returns SQLITE_OK or an SQLite error code.
int RegisterJetRuntime(sqlite3* db);

// Binds literal i of `shape` to parameter offset+i+1 of `statement` by its
// kind (text, 64-bit integer, double), skipping parameters the statement
// does not have (a literal written into the text). Use offset = the number of
// the query's literals when a criteria's SQL is appended after a query's and
// its ?N are renumbered past them. Returns SQLITE_OK or the bind's error.
int BindLiterals(sqlite3_stmt* statement, const Shape& shape, int offset = 0);

// Compares two UTF-8 texts as the JET collation does (<0, 0, >0).
int CompareText(std::string_view a, std::string_view b);

// The text's key under the same collation: two keys compared byte by byte
// (as unsigned bytes) order their texts as CompareText does, and are equal
// exactly when CompareText finds the texts equal. For sorting many texts,
// where a key made once per text is cheaper than a comparison per pair.
std::string CollationKey(std::string_view text);

// Jet's Like on two texts.
bool JetLike(std::string_view text, std::string_view pattern);

}  // namespace zelvo::dao::jet
