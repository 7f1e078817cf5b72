// Writes SQLite text for parsed Jet SQL: expressions (expr_writer.cpp),
// SELECT with its FROM list and output names (select_writer.cpp), and the
// other statements (statement_writer.cpp).
//
// Rules every piece follows:
//  * names are written in double quotes, string and number literals as
//    parameters ?N (N = the literal's index + 1), never as double-quoted text;
//  * a comparison that may compare two texts carries COLLATE JET unless one
//    side is a column (whose declared collation then applies, and an index on
//    it stays usable);
//  * every compound expression is written in parentheses, so that the pieces
//    can be put together without thinking about SQLite's precedence.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/dao/jet/ast.h"
#include "platform/dao/jet/jet_sql.h"
#include "platform/dao/jet/parser.h"
#include "platform/dao/jet/text_util.h"

namespace zelvo::dao::jet {

// Where names in an expression are looked up: the sources of one SELECT (or
// the fields of a record set), then the enclosing query's.
class NameScope {
public:
    virtual ~NameScope() = default;
    // Sets `sql` to the SQLite text of [qualifier.]name and returns true when
    // this scope knows the name; throws 3079 when it is ambiguous here.
    virtual bool Resolve(const std::string& qualifier, const std::string& name, std::string& sql) const = 0;
    const NameScope* outer = nullptr;
};

// What kind of value an expression gives, as far as the writer can tell; it
// decides where COLLATE JET is needed.
enum class ValueType { Text, Number, Boolean, Column, Unknown };

// Names a FROM clause brings into scope (used by select_writer.cpp and the
// single-table statements).
struct SourceScope : NameScope {
    struct Entry {
        std::string ref;      // how SQL names it: the alias, else the stored name
        std::string written;  // alias or name as written in the FROM clause
        std::vector<std::string> columns;
    };
    std::vector<Entry> entries;
    bool Resolve(const std::string& qualifier, const std::string& name, std::string& sql) const override;
};

class Writer {
public:
    Writer(const Parser& parser, const Catalog* catalog) : parser_(parser), catalog_(catalog) {}

    std::string Expression(const Expr& e, const NameScope& scope);
    ValueType TypeOf(const Expr& e) const;

    // A SELECT. `top` adds hidden rowids and fills the result description;
    // nested selects (subqueries, Insert … Select) only give their SQL.
    struct SelectResult {
        std::string sql;
        std::vector<OutputColumn> columns;
        std::vector<Source> sources;
        int hiddenRowids = 0;
        bool distinct = false;
        bool commaJoin = false;
        std::vector<Translation::LookupColumn> lookupColumns;
        std::vector<Translation::JoinLink> joinLinks;
    };
    SelectResult WriteSelect(const Select& s, const NameScope* outer, bool top);

    // Names that resolved nowhere: Jet takes them for parameters, and the
    // statement fails with 3061 counting them. Call at the end.
    void CheckUnknownNames() const;
    void AddUnknown(const std::string& qualifier, const std::string& name);

    bool cacheable = true;

    static std::string Quote(const std::string& name);
    // Literal i: the parameter ?(i+1), or, for a view, the value written as
    // an SQLite literal.
    std::string Param(int literal) const;
    bool inlineLiterals = false;
    // Criteria run over the engine's own row source, whose columns may carry
    // no collation: there a comparison of two fields is collated explicitly.
    bool criteriaMode = false;

private:
    std::string Comparison(const std::string& op, const Expr& l, const Expr& r, const NameScope& scope);
    std::string Call(const Expr& e, const NameScope& scope);
    std::string Collated(const Expr& e, const NameScope& scope, bool againstText);
    bool HasAggregate(const Expr& e) const;
    friend class SelectWriter;

    const Parser& parser_;
    const Catalog* catalog_;
    std::vector<std::string> unknown_;
};


// The column references that `condition` (a WHERE clause or a criteria
// string) compares by "=" with a literal in its top-level conjunction, as in
// "[Owner ID]=5 And [OwnerType]=0": the comparisons an index can serve.
std::vector<const Expr*> ColumnsComparedWithLiterals(const Expr& condition);

}  // namespace zelvo::dao::jet
