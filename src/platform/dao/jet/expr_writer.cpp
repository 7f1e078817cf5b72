// Jet expressions → SQLite expressions.
#include <algorithm>
#include <cstdio>
#include <cctype>
#include "platform/dao/jet/text_util.h"

#include "platform/dao/jet/errors.h"
#include "platform/dao/jet/writer.h"

namespace zelvo::dao::jet {


namespace {

void CollectColumnEqualities(const Expr& e, std::vector<const Expr*>& out) {
    if (e.kind == Expr::Kind::Binary && e.op == "AND") {
        CollectColumnEqualities(*e.args[0], out);
        CollectColumnEqualities(*e.args[1], out);
        return;
    }
    if (e.kind != Expr::Kind::Binary || e.op != "=") return;
    const Expr* col = e.args[0].get();
    const Expr* lit = e.args[1].get();
    if (col->kind != Expr::Kind::Column) std::swap(col, lit);
    if (col->kind == Expr::Kind::Column && lit->kind == Expr::Kind::Literal) out.push_back(col);
}

}  // namespace

std::vector<const Expr*> ColumnsComparedWithLiterals(const Expr& condition) {
    std::vector<const Expr*> out;
    CollectColumnEqualities(condition, out);
    return out;
}

std::string Writer::Quote(const std::string& name) {
    std::string out;
    out.reserve(name.size() + 2);
    out += '"';
    for (char c : name) {
        out += c;
        if (c == '"') out += '"';
    }
    out += '"';
    return out;
}

std::string Writer::Param(int literal) const {
    if (!inlineLiterals) return "?" + std::to_string(literal + 1);
    const auto& lits = parser_.literals();
    if (literal < 0 || literal >= static_cast<int>(lits.size())) return "NULL";
    const Variant& v = lits[literal];
    switch (v.kind()) {
    case Variant::Kind::Integer: return std::to_string(v.integer());
    case Variant::Kind::Double: {
        char buf[40];
        std::snprintf(buf, sizeof buf, "%.17g", v.real());
        return buf;
    }
    case Variant::Kind::Boolean: return v.boolean() ? "-1" : "0";
    case Variant::Kind::Null: return "NULL";
    default: {
        std::string out = "'";
        for (char c : v.AsText()) {
            out += c;
            if (c == '\'') out += '\'';
        }
        return out + "'";
    }
    }
}

bool SourceScope::Resolve(const std::string& qualifier, const std::string& name, std::string& sql) const {
    if (!qualifier.empty()) {
        for (const Entry& e : entries) {
            if (!SameName(e.written, qualifier) && !SameName(e.ref, qualifier)) continue;
            for (const std::string& c : e.columns) {
                if (SameName(c, name)) {
                    sql = Writer::Quote(e.ref) + "." + Writer::Quote(c);
                    return true;
                }
            }
            return false;  // the source is here but has no such field: an unknown name
        }
        return false;
    }
    const Entry* found = nullptr;
    const std::string* column = nullptr;
    for (const Entry& e : entries) {
        for (const std::string& c : e.columns) {
            if (SameName(c, name)) {
                if (found && found != &e) ThrowAmbiguousField(name);
                found = &e;
                column = &c;
                break;
            }
        }
    }
    if (!found) return false;
    sql = Writer::Quote(found->ref) + "." + Writer::Quote(*column);
    return true;
}

void Writer::AddUnknown(const std::string& qualifier, const std::string& name) {
    std::string full = qualifier.empty() ? name : qualifier + "." + name;
    for (const std::string& u : unknown_)
        if (SameName(u, full)) return;
    unknown_.push_back(std::move(full));
}

void Writer::CheckUnknownNames() const {
    if (!unknown_.empty()) ThrowTooFewParameters(static_cast<int>(unknown_.size()));
}

namespace {

bool IsComparisonOp(const std::string& op) {
    return op == "=" || op == "<>" || op == "<" || op == ">" || op == "<=" || op == ">=";
}

// A function of the dialect: how it is written in SQLite.
struct FunctionSpec {
    const char* name;     // Jet name, upper case, without "$"
    int minArgs, maxArgs;
    const char* sqlName;  // SQLite function, or "" for the ones written by hand
    ValueType type;
};

constexpr FunctionSpec kFunctions[] = {
    {"INSTR", 2, 4, "", ValueType::Number},
    {"MID", 2, 3, "jet_mid", ValueType::Text},
    {"LEFT", 2, 2, "jet_left", ValueType::Text},
    {"RIGHT", 2, 2, "jet_right", ValueType::Text},
    {"LEN", 1, 1, "jet_len", ValueType::Number},
    {"LCASE", 1, 1, "jet_lcase", ValueType::Text},
    {"UCASE", 1, 1, "jet_ucase", ValueType::Text},
    {"TRIM", 1, 1, "jet_trim", ValueType::Text},
    {"LTRIM", 1, 1, "jet_ltrim", ValueType::Text},
    {"RTRIM", 1, 1, "jet_rtrim", ValueType::Text},
    {"ASC", 1, 1, "jet_asc", ValueType::Number},
    {"ASCW", 1, 1, "jet_asc", ValueType::Number},
    {"CHR", 1, 1, "jet_chr", ValueType::Text},
    {"CHRW", 1, 1, "jet_chr", ValueType::Text},
    {"IIF", 3, 3, "", ValueType::Unknown},
    {"NZ", 1, 2, "", ValueType::Unknown},
    {"ISNULL", 1, 1, "", ValueType::Boolean},
    {"CLNG", 1, 1, "jet_clng", ValueType::Number},
    {"CINT", 1, 1, "jet_clng", ValueType::Number},
    {"CDBL", 1, 1, "jet_cdbl", ValueType::Number},
    {"CSTR", 1, 1, "jet_cstr", ValueType::Text},
    {"VAL", 1, 1, "jet_val", ValueType::Number},
    {"ABS", 1, 1, "abs", ValueType::Number},
    {"COUNT", 1, 1, "count", ValueType::Number},
    {"SUM", 1, 1, "sum", ValueType::Number},
    {"AVG", 1, 1, "avg", ValueType::Number},
    {"MIN", 1, 1, "min", ValueType::Unknown},
    {"MAX", 1, 1, "max", ValueType::Unknown},
};

bool IsAggregateName(std::string_view n) {
    return SameName(n, "COUNT") || SameName(n, "SUM") || SameName(n, "AVG") || SameName(n, "MIN") ||
           SameName(n, "MAX");
}

// The function's entry; `dollar` tells whether it was written with "$"
// (Mid$, Left$, …: a text result, never Null).
const FunctionSpec* FindFunction(std::string_view name, bool& dollar) {
    dollar = !name.empty() && name.back() == '$';
    if (dollar) name.remove_suffix(1);
    for (const FunctionSpec& f : kFunctions)
        if (SameName(name, f.name)) return &f;
    return nullptr;
}

}  // namespace

bool Writer::HasAggregate(const Expr& e) const {
    if (e.kind == Expr::Kind::Call && IsAggregateName(e.name)) return true;
    for (const auto& a : e.args)
        if (a && HasAggregate(*a)) return true;
    return false;
}

ValueType Writer::TypeOf(const Expr& e) const {
    switch (e.kind) {
    case Expr::Kind::Literal: return e.isText ? ValueType::Text : ValueType::Number;
    case Expr::Kind::Boolean: return ValueType::Number;
    case Expr::Kind::Column: return ValueType::Column;
    case Expr::Kind::Unary: return e.op == "NOT" ? ValueType::Boolean : ValueType::Number;
    case Expr::Kind::Binary:
        if (e.op == "&") return ValueType::Text;
        if (e.op == "+") {
            ValueType l = TypeOf(*e.args[0]), r = TypeOf(*e.args[1]);
            if (l == ValueType::Text || r == ValueType::Text) return ValueType::Text;
            if (l == ValueType::Number && r == ValueType::Number) return ValueType::Number;
            return ValueType::Unknown;
        }
        if (e.op == "-" || e.op == "*" || e.op == "/" || e.op == "\\" || e.op == "MOD" || e.op == "^")
            return ValueType::Number;
        return ValueType::Boolean;
    case Expr::Kind::Like:
    case Expr::Kind::IsNull:
    case Expr::Kind::In:
    case Expr::Kind::Between:
    case Expr::Kind::Exists: return ValueType::Boolean;
    case Expr::Kind::Call: {
        bool dollar = false;
        const FunctionSpec* f = FindFunction(e.name, dollar);
        return f ? f->type : ValueType::Unknown;
    }
    default: return ValueType::Unknown;
    }
}

// The left side of In and Between decides their collation: it gets COLLATE
// JET unless it is a number, or a column compared with no text.
std::string Writer::Collated(const Expr& e, const NameScope& scope, bool againstText) {
    std::string sql = Expression(e, scope);
    ValueType t = TypeOf(e);
    if (t == ValueType::Number || t == ValueType::Boolean) return sql;
    if (t == ValueType::Column && !againstText) return sql;
    return "(" + sql + " COLLATE JET)";
}

std::string Writer::Comparison(const std::string& op, const Expr& l, const Expr& r, const NameScope& scope) {
    std::string ls = Expression(l, scope), rs = Expression(r, scope);
    ValueType lt = TypeOf(l), rt = TypeOf(r);
    auto numeric = [](ValueType t) { return t == ValueType::Number || t == ValueType::Boolean; };
    bool collate = lt == ValueType::Text || rt == ValueType::Text ||
                   (lt != ValueType::Column && rt != ValueType::Column && !(numeric(lt) && numeric(rt))) ||
                   (criteriaMode && lt == ValueType::Column && rt == ValueType::Column);
    return "(" + ls + " " + op + " " + rs + (collate ? " COLLATE JET)" : ")");
}

std::string Writer::Expression(const Expr& e, const NameScope& scope) {
    switch (e.kind) {
    case Expr::Kind::Literal: return Param(e.literal);
    case Expr::Kind::Null: return "NULL";
    case Expr::Kind::Boolean: return e.boolean ? "-1" : "0";
    case Expr::Kind::Column: {
        std::string sql;
        for (const NameScope* s = &scope; s; s = s->outer)
            if (s->Resolve(e.qualifier, e.name, sql)) return sql;
        AddUnknown(e.qualifier, e.name);
        return "NULL";
    }
    case Expr::Kind::Star:
        // Only Count(*) reaches here; select lists expand stars themselves.
        ThrowMissingOperator(parser_.Render(e.begin, e.end));
    case Expr::Kind::Unary: {
        std::string a = Expression(*e.args[0], scope);
        if (e.op == "NOT") return "(NOT " + a + ")";
        if (e.op == "-") return "(-" + a + ")";
        return "(+" + a + ")";
    }
    case Expr::Kind::Binary: {
        const Expr& l = *e.args[0];
        const Expr& r = *e.args[1];
        if (IsComparisonOp(e.op)) return Comparison(e.op, l, r, scope);
        std::string ls = Expression(l, scope), rs = Expression(r, scope);
        if (e.op == "AND") return "(" + ls + " AND " + rs + ")";
        if (e.op == "OR") return "(" + ls + " OR " + rs + ")";
        if (e.op == "XOR") return "((" + ls + " <> 0) <> (" + rs + " <> 0))";
        if (e.op == "EQV") return "((" + ls + " <> 0) = (" + rs + " <> 0))";
        if (e.op == "IMP") return "((NOT " + ls + ") OR " + rs + ")";
        if (e.op == "&") return "jet_concat(" + ls + ", " + rs + ")";
        if (e.op == "+") return "jet_plus(" + ls + ", " + rs + ")";
        if (e.op == "-" || e.op == "*") return "(" + ls + " " + e.op + " " + rs + ")";
        if (e.op == "/") return "(CAST(" + ls + " AS REAL) / " + rs + ")";
        if (e.op == "\\") return "jet_intdiv(" + ls + ", " + rs + ")";
        if (e.op == "MOD") return "jet_mod(" + ls + ", " + rs + ")";
        if (e.op == "^") return "jet_pow(" + ls + ", " + rs + ")";
        ThrowMissingOperator(parser_.Render(e.begin, e.end));
    }
    case Expr::Kind::Like: {
        std::string sql = "jet_like(" + Expression(*e.args[0], scope) + ", " + Expression(*e.args[1], scope) + ")";
        return e.negated ? "(NOT " + sql + ")" : sql;
    }
    case Expr::Kind::IsNull:
        return "(" + Expression(*e.args[0], scope) + (e.negated ? " IS NOT NULL)" : " IS NULL)");
    case Expr::Kind::In: {
        bool text = false;
        for (std::size_t k = 1; k < e.args.size(); ++k) text = text || TypeOf(*e.args[k]) == ValueType::Text;
        std::string sql = "(" + Collated(*e.args[0], scope, text) + (e.negated ? " NOT IN (" : " IN (");
        if (e.subquery) {
            sql += WriteSelect(*e.subquery, &scope, false).sql;
        } else {
            for (std::size_t k = 1; k < e.args.size(); ++k) {
                if (k > 1) sql += ", ";
                sql += Expression(*e.args[k], scope);
            }
        }
        return sql + "))";
    }
    case Expr::Kind::Between: {
        // Jet accepts the bounds in either order.
        bool text = TypeOf(*e.args[1]) == ValueType::Text || TypeOf(*e.args[2]) == ValueType::Text;
        std::string v = Collated(*e.args[0], scope, text);
        std::string a = Expression(*e.args[1], scope), b = Expression(*e.args[2], scope);
        std::string sql = "((" + v + " BETWEEN " + a + " AND " + b + ") OR (" + v + " BETWEEN " + b + " AND " + a + "))";
        return e.negated ? "(NOT " + sql + ")" : sql;
    }
    case Expr::Kind::Exists: return "(EXISTS (" + WriteSelect(*e.subquery, &scope, false).sql + "))";
    case Expr::Kind::Subquery: return "(" + WriteSelect(*e.subquery, &scope, false).sql + ")";
    case Expr::Kind::Call: return Call(e, scope);
    }
    ThrowMissingOperator(parser_.Render(e.begin, e.end));
}

std::string Writer::Call(const Expr& e, const NameScope& scope) {
    bool dollar = false;
    const FunctionSpec* f = FindFunction(e.name, dollar);
    if (!f) ThrowUndefinedFunction(e.name, parser_.Render(e.begin, e.end));
    const int n = static_cast<int>(e.args.size());
    if (n < f->minArgs || n > f->maxArgs) ThrowWrongArgumentCount(e.name, parser_.Render(e.begin, e.end));

    std::string name = f->name;
    if (name == "COUNT" && e.args[0]->kind == Expr::Kind::Star && e.args[0]->qualifier.empty()) return "count(*)";

    std::vector<std::string> a;
    for (const auto& arg : e.args) a.push_back(Expression(*arg, scope));

    std::string sql;
    if (name == "INSTR") {
        // Instr(s1, s2) | Instr(start, s1, s2) | Instr(start, s1, s2, compare).
        // Without a compare argument a query compares as text (case-blind).
        if (n == 2) sql = "jet_instr(1, " + a[0] + ", " + a[1] + ", 1)";
        else if (n == 3) sql = "jet_instr(" + a[0] + ", " + a[1] + ", " + a[2] + ", 1)";
        else sql = "jet_instr(" + a[0] + ", " + a[1] + ", " + a[2] + ", " + a[3] + ")";
    } else if (name == "IIF") {
        sql = "(CASE WHEN " + a[0] + " THEN " + a[1] + " ELSE " + a[2] + " END)";
    } else if (name == "NZ") {
        sql = "coalesce(" + a[0] + ", " + (n == 2 ? a[1] : std::string("''")) + ")";
    } else if (name == "ISNULL") {
        sql = "(-(" + a[0] + " IS NULL))";
    } else {
        sql = std::string(f->sqlName) + "(";
        for (int k = 0; k < n; ++k) sql += (k ? ", " : "") + a[k];
        sql += ")";
    }
    // Mid$, Left$, …: the text twins never give Null.
    if (dollar && f->type == ValueType::Text) sql = "ifnull(" + sql + ", '')";
    return sql;
}

}  // namespace zelvo::dao::jet
