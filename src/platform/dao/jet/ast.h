// The parse tree of a Jet SQL statement or criteria string.
//
// The parser builds it from the tokens of a shape's key; the writers walk it
// to produce SQLite text. Literals stay indexes into the shape, so a tree is
// valid for every text of the same shape.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace zelvo::dao::jet {

struct Select;

struct Expr {
    enum class Kind {
        Literal,   // `literal`, `isText`
        Null,
        Boolean,   // `boolean`
        Column,    // [qualifier.]name
        Star,      // * or qualifier.* (only in a select list or Count(*))
        Unary,     // op: "NOT", "-", "+"
        Binary,    // op: "OR" "AND" "XOR" "EQV" "IMP" "=" "<>" "<" ">" "<=" ">=" "&" "+" "-" "*" "/" "\\" "MOD" "^"
        Like,      // args[0] Like args[1]; `negated`
        IsNull,    // args[0] Is [Not] Null; `negated`
        In,        // args[0] In (args[1..]) or In (subquery); `negated`
        Between,   // args[0] Between args[1] And args[2]; `negated`
        Exists,    // Exists (subquery)
        Call,      // name(args)
        Subquery,  // (Select …) as a value
    };
    Kind kind = Kind::Null;
    int literal = -1;
    bool isText = false;
    bool boolean = false;
    bool negated = false;
    std::string qualifier;  // Column/Star: table or alias, "" when bare
    std::string name;       // Column: field name; Call: function name
    std::string op;
    std::vector<std::unique_ptr<Expr>> args;
    std::unique_ptr<Select> subquery;
    std::size_t begin = 0, end = 0;  // byte range in the key, for error texts
    int height = 1;                  // levels of the tree below and with this node
};

using ExprPtr = std::unique_ptr<Expr>;

// A FROM item: a table or saved query, or a join of two items.
struct FromItem {
    enum class Kind { Table, Join } kind = Kind::Table;
    std::string name;   // Table
    std::string alias;  // Table: alias or "" when none
    enum class JoinKind { Inner, Left, Right } join = JoinKind::Inner;
    std::unique_ptr<FromItem> left, right;  // Join
    ExprPtr on;                             // Join
};

using FromPtr = std::unique_ptr<FromItem>;

struct SelectItem {
    ExprPtr expr;
    std::string alias;  // "" when none
};

struct OrderItem {
    ExprPtr expr;
    bool descending = false;
};

struct Select {
    enum class Predicate { None, All, Distinct, DistinctRow } predicate = Predicate::None;
    int topLiteral = -1;  // Top n: the literal's index
    std::vector<SelectItem> items;
    std::vector<FromPtr> from;  // comma-separated items
    ExprPtr where, having;
    std::vector<ExprPtr> groupBy;
    std::vector<OrderItem> orderBy;
};

struct ColumnSpec {
    std::string name;
    std::string typeName;
    int sizeLiteral = -1;  // Text(n): the literal's index
    bool notNull = false;
    bool primaryKey = false;
    bool unique = false;
};

struct Statement {
    enum class Kind { Select, Insert, Update, Delete, CreateTable, AlterTable, DropTable } kind = Kind::Select;
    std::unique_ptr<Select> select;  // Select; Insert … Select
    std::string table;               // Insert/Update/Delete/DDL
    std::vector<std::string> columns;  // Insert column list; Update targets (parallel to `values`)
    std::vector<ExprPtr> values;       // Insert … Values; Update assignments
    ExprPtr where;                     // Update/Delete
    std::vector<FromPtr> deleteFrom;   // Delete over a join: the FROM items
    std::vector<ColumnSpec> columnSpecs;  // Create Table; Alter Table Add/Alter: one
    // Create Table: CONSTRAINT name PRIMARY KEY (a, b) / UNIQUE (a) items.
    struct TableKey {
        bool primary = false;
        std::vector<std::string> columns;
    };
    std::vector<TableKey> tableKeys;
    enum class Alter { None, Add, Drop, AlterColumn } alter = Alter::None;
    std::string dropColumn;
};

}  // namespace zelvo::dao::jet
