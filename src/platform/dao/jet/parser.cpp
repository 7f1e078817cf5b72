#include "platform/dao/jet/parser.h"

#include <array>
#include <cstdlib>
#include "platform/dao/jet/text_util.h"

#include "platform/dao/jet/errors.h"

namespace zelvo::dao::jet {

namespace {


// Words that end an expression or a name list; they are never taken as names
// unless written in brackets.
constexpr std::array<std::string_view, 38> kReserved = {
    "SELECT", "FROM",  "WHERE", "GROUP",   "ORDER",  "HAVING", "BY",     "AND",     "OR",  "NOT",
    "XOR",    "EQV",   "IMP",   "MOD",     "LIKE",   "IS",     "IN",     "BETWEEN", "ON",  "AS",
    "INNER",  "LEFT",  "RIGHT", "JOIN",    "OUTER",  "ASC",    "DESC",   "UNION",   "SET", "VALUES",
    "INTO",   "NULL",  "TRUE",  "FALSE",   "EXISTS", "DISTINCT", "DISTINCTROW", "TOP"};

// The deepest nesting of expressions and joins accepted; deeper texts are
// refused rather than risking the stack.
constexpr int kMaxDepth = 200;

// The tallest expression tree and the most tables a FROM clause may join.
// Jet itself gives up far earlier ("Query is too complex."); the limits keep
// the writer's recursion and the tree's destruction within the stack.
constexpr int kMaxHeight = 1000;
constexpr int kMaxJoins = 64;

[[noreturn]] void ThrowTooComplex() { throw Error(3360, "Query is too complex.", kErrorSource); }

// Sets e's height from its operands; refuses a tree taller than kMaxHeight.
void SetHeight(Expr& e) {
    int h = 0;
    for (const auto& a : e.args)
        if (a && a->height > h) h = a->height;
    e.height = h + 1;
    if (e.height > kMaxHeight) ThrowTooComplex();
}

struct DepthGuard {
    int& depth;
    explicit DepthGuard(int& d) : depth(d) {
        if (++depth > kMaxDepth) {
            --depth;
            ThrowTooComplex();
        }
    }
    ~DepthGuard() { --depth; }
};

}  // namespace

Parser::Parser(std::string_view key, const std::vector<Variant>& literals) : key_(key), literals_(literals) {
    Lexer lexer(key);
    try {
        for (;;) {
            Token t = lexer.Next();
            tokens_.push_back(t);
            if (t.kind == Tok::End) break;
        }
    } catch (const Error& e) {
        // The lexer sees only the key; show the text with its literals.
        std::size_t from = 0;
        for (std::size_t k = tokens_.size(); k-- > 0;) {
            bool clause = false;
            for (std::string_view kw : {"SELECT", "WHERE", "HAVING", "ON", "BY", "SET", "FROM"})
                clause = clause || IsKeyword(tokens_[k], kw);
            if (clause) {
                from = k + 1 < tokens_.size() ? tokens_[k + 1].pos : tokens_[k].pos + tokens_[k].text.size();
                break;
            }
        }
        if (e.description().rfind("Missing", 0) == 0) ThrowMissingParen(Render(from, key_.size()));
        ThrowMissingOperator(Render(from, key_.size()));
    }
}

const Token& Parser::Peek(std::size_t ahead) const {
    std::size_t k = i_ + ahead;
    return k < tokens_.size() ? tokens_[k] : tokens_.back();
}

Token Parser::Take() {
    Token t = Peek();
    if (i_ + 1 < tokens_.size()) ++i_;
    else i_ = tokens_.size() - 1;
    return t;
}

bool Parser::IsKeyword(const Token& t, std::string_view kw) const {
    return t.kind == Tok::Word && SameName(t.text, kw);
}

bool Parser::AcceptKeyword(std::string_view kw) {
    if (!AtKeyword(kw)) return false;
    Take();
    return true;
}

bool Parser::AtSymbol(std::string_view s, std::size_t ahead) const {
    const Token& t = Peek(ahead);
    return t.kind == Tok::Symbol && t.text == s;
}

bool Parser::AcceptSymbol(std::string_view s) {
    if (!AtSymbol(s)) return false;
    Take();
    return true;
}

bool Parser::IsReserved(const Token& t) const {
    if (t.kind != Tok::Word) return false;
    for (std::string_view kw : kReserved)
        if (SameName(t.text, kw)) return true;
    return false;
}

bool Parser::AtEnd() const { return Peek().kind == Tok::End; }

void Parser::ExpectEnd() {
    while (AcceptSymbol(";")) {
    }
    if (!AtEnd()) ThrowCharactersAfterEnd();
}

std::string Parser::Render(std::size_t begin, std::size_t end) const {
    std::string out;
    int literal = 0;
    for (std::size_t k = 0; k < key_.size() && k < end; ++k) {
        char c = key_[k];
        bool mark = c == kStringMark || c == kNumberMark;
        if (k >= begin) {
            if (mark && literal < static_cast<int>(literals_.size())) {
                const Variant& v = literals_[literal];
                if (c == kStringMark) {
                    out += '"';
                    for (char ch : v.AsText()) {
                        out += ch;
                        if (ch == '"') out += '"';
                    }
                    out += '"';
                } else {
                    out += v.AsText();
                }
            } else {
                out += c;
            }
        }
        if (mark) ++literal;
    }
    // Trim the blanks around it, as Jet's message shows the expression alone.
    std::size_t a = out.find_first_not_of(" \t\r\n");
    std::size_t b = out.find_last_not_of(" \t\r\n;");
    return a == std::string::npos ? std::string() : out.substr(a, b - a + 1);
}

// ---------------------------------------------------------------- statements

Statement Parser::ParseStatement() {
    const Token& t = Peek();
    Statement st;
    if (IsKeyword(t, "SELECT")) {
        st.kind = Statement::Kind::Select;
        st.select = ParseSelect(false);
        ExpectEnd();
        return st;
    }
    if (IsKeyword(t, "INSERT")) return ParseInsert();
    if (IsKeyword(t, "UPDATE")) return ParseUpdate();
    if (IsKeyword(t, "DELETE")) return ParseDelete();
    if (IsKeyword(t, "CREATE")) return ParseCreate();
    if (IsKeyword(t, "ALTER")) return ParseAlter();
    if (IsKeyword(t, "DROP")) return ParseDrop();
    if (AtSymbol("(") ) {
        // "(Select …)" as a whole statement.
        std::size_t save = i_;
        Take();
        if (AtKeyword("SELECT")) {
            st.select = ParseSelect(true);
            if (AcceptSymbol(")")) {
                ExpectEnd();
                return st;
            }
        }
        i_ = save;
    }
    ThrowNotAStatement();
}

std::string Parser::ParseName(void (*fail)()) {
    const Token& t = Peek();
    if (t.kind == Tok::Bracket || (t.kind == Tok::Word && !IsReserved(t))) {
        std::string name(t.text);
        Take();
        return name;
    }
    fail();
    std::abort();  // not reached: every fail() throws
}

std::unique_ptr<Select> Parser::ParseSelect(bool nested) {
    DepthGuard guard(depth_);
    auto s = std::make_unique<Select>();
    Take();  // SELECT
    if (AcceptKeyword("ALL")) s->predicate = Select::Predicate::All;
    else if (AcceptKeyword("DISTINCTROW")) s->predicate = Select::Predicate::DistinctRow;
    else if (AcceptKeyword("DISTINCT")) s->predicate = Select::Predicate::Distinct;
    if (AcceptKeyword("TOP")) {
        const Token& n = Peek();
        if (n.kind != Tok::Number) ThrowSelectSyntax();
        s->topLiteral = n.literal;
        Take();
        if (AtKeyword("PERCENT")) ThrowSelectSyntax();
    }
    ParseSelectList(*s);
    if (AcceptKeyword("FROM")) ParseFromList(s->from);
    if (AcceptKeyword("WHERE")) s->where = ParseClauseExpr();
    if (AtKeyword("GROUP")) {
        Take();
        if (!AcceptKeyword("BY")) ThrowSelectSyntax();
        do {
            s->groupBy.push_back(ParseClauseExpr());
        } while (AcceptSymbol(","));
    }
    if (AcceptKeyword("HAVING")) s->having = ParseClauseExpr();
    if (AtKeyword("ORDER")) {
        Take();
        if (!AcceptKeyword("BY")) ThrowOrderBySyntax();
        do {
            OrderItem item;
            if (AtEnd() || AtSymbol(";")) ThrowOrderBySyntax();
            item.expr = ParseClauseExpr();
            if (AcceptKeyword("DESC")) item.descending = true;
            else AcceptKeyword("ASC");
            s->orderBy.push_back(std::move(item));
        } while (AcceptSymbol(","));
    }
    if (!nested && !AtEnd() && !AtSymbol(";")) {
        if (AtKeyword("UNION")) ThrowSelectSyntax();
        ThrowCharactersAfterEnd();
    }
    return s;
}

void Parser::ParseSelectList(Select& s) {
    // "Select All from T", "Select Distinct from T": a predicate with no list
    // means every field.
    if (AtKeyword("FROM") && s.predicate != Select::Predicate::None) {
        SelectItem item;
        item.expr = std::make_unique<Expr>();
        item.expr->kind = Expr::Kind::Star;
        s.items.push_back(std::move(item));
        return;
    }
    if (AtKeyword("FROM") || AtEnd()) ThrowSelectSyntax();
    do {
        SelectItem item;
        item.expr = ParseClauseExpr();
        if (AcceptKeyword("AS")) {
            const Token& a = Peek();
            if (a.kind == Tok::Bracket || (a.kind == Tok::Word && !IsReserved(a))) {
                item.alias = std::string(a.text);
                Take();
            } else if (a.kind == Tok::String && a.literal < static_cast<int>(literals_.size())) {
                item.alias = literals_[a.literal].AsText();
                Take();
            } else {
                ThrowSelectSyntax();
            }
        }
        s.items.push_back(std::move(item));
    } while (AcceptSymbol(","));
}

void Parser::ParseFromList(std::vector<FromPtr>& out) {
    do {
        if (out.size() > static_cast<std::size_t>(kMaxJoins)) ThrowTooComplex();
        out.push_back(ParseFromItem());
    } while (AcceptSymbol(","));
}

FromPtr Parser::ParseFromItem() {
    DepthGuard guard(depth_);
    FromPtr left = ParseFromPrimary();
    for (int joins = 0;; ++joins) {
        if (joins > kMaxJoins) ThrowTooComplex();
        FromItem::JoinKind kind;
        if (AtKeyword("INNER")) {
            Take();
            kind = FromItem::JoinKind::Inner;
        } else if (AtKeyword("LEFT")) {
            Take();
            AcceptKeyword("OUTER");
            kind = FromItem::JoinKind::Left;
        } else if (AtKeyword("RIGHT")) {
            Take();
            AcceptKeyword("OUTER");
            kind = FromItem::JoinKind::Right;
        } else if (AtKeyword("JOIN")) {
            ThrowFromSyntax();  // Jet wants the kind of join spelt out
        } else {
            return left;
        }
        if (!AcceptKeyword("JOIN")) ThrowFromSyntax();
        FromPtr right = ParseFromPrimary();
        if (!AcceptKeyword("ON")) ThrowFromSyntax();
        auto join = std::make_unique<FromItem>();
        join->kind = FromItem::Kind::Join;
        join->join = kind;
        join->left = std::move(left);
        join->right = std::move(right);
        join->on = ParseClauseExpr();
        left = std::move(join);
    }
}

FromPtr Parser::ParseFromPrimary() {
    DepthGuard guard(depth_);
    if (AcceptSymbol("(")) {
        if (AtKeyword("SELECT")) ThrowFromSyntax();  // derived tables are not part of the dialect
        FromPtr inner = ParseFromItem();
        if (!AcceptSymbol(")")) ThrowFromSyntax();
        return inner;
    }
    auto item = std::make_unique<FromItem>();
    item->name = ParseName(&ThrowFromSyntax);
    if (AcceptKeyword("AS")) {
        item->alias = ParseName(&ThrowFromSyntax);
    } else {
        const Token& t = Peek();
        if (t.kind == Tok::Bracket || (t.kind == Tok::Word && !IsReserved(t))) {
            item->alias = std::string(t.text);
            Take();
        }
    }
    return item;
}

Statement Parser::ParseInsert() {
    Statement st;
    st.kind = Statement::Kind::Insert;
    Take();  // INSERT
    if (!AcceptKeyword("INTO")) ThrowInsertSyntax();
    st.table = ParseName(&ThrowInsertSyntax);
    if (AcceptSymbol("(")) {
        do {
            std::string name = ParseName(&ThrowInsertSyntax);
            // "T.[F]" in a column list names F of the target.
            if (AcceptSymbol(".")) name = ParseName(&ThrowInsertSyntax);
            st.columns.push_back(std::move(name));
        } while (AcceptSymbol(","));
        if (!AcceptSymbol(")")) ThrowInsertSyntax();
    }
    if (AcceptKeyword("VALUES")) {
        if (!AcceptSymbol("(")) ThrowInsertSyntax();
        do {
            st.values.push_back(ParseClauseExpr());
        } while (AcceptSymbol(","));
        if (!AcceptSymbol(")")) ThrowInsertSyntax();
        ExpectEnd();
        return st;
    }
    if (AtKeyword("SELECT")) {
        st.select = ParseSelect(false);
        ExpectEnd();
        return st;
    }
    ThrowInsertSyntax();
}

Statement Parser::ParseUpdate() {
    Statement st;
    st.kind = Statement::Kind::Update;
    Take();  // UPDATE
    st.table = ParseName(&ThrowUpdateSyntax);
    if (AtKeyword("INNER") || AtKeyword("LEFT") || AtKeyword("RIGHT")) ThrowNotUpdatable();
    if (!AcceptKeyword("SET")) ThrowUpdateSyntax();
    do {
        std::string name = ParseName(&ThrowUpdateSyntax);
        if (AcceptSymbol(".")) name = ParseName(&ThrowUpdateSyntax);
        if (!AcceptSymbol("=")) ThrowUpdateSyntax();
        st.columns.push_back(std::move(name));
        st.values.push_back(ParseClauseExpr());
    } while (AcceptSymbol(","));
    if (AcceptKeyword("WHERE")) st.where = ParseClauseExpr();
    ExpectEnd();
    return st;
}

Statement Parser::ParseDelete() {
    Statement st;
    st.kind = Statement::Kind::Delete;
    Take();  // DELETE
    // Delete [*] | [T.*] | [T.F, …] From …: the list names nothing Jet needs.
    while (!AtKeyword("FROM") && !AtEnd()) Take();
    if (!AcceptKeyword("FROM")) ThrowNotAStatement();
    ParseFromList(st.deleteFrom);
    if (st.deleteFrom.size() == 1 && st.deleteFrom[0]->kind == FromItem::Kind::Table) {
        st.table = st.deleteFrom[0]->name;
    }
    if (AcceptKeyword("WHERE")) st.where = ParseClauseExpr();
    ExpectEnd();
    return st;
}

ColumnSpec Parser::ParseColumnSpec(void (*fail)()) {
    ColumnSpec c;
    c.name = ParseName(fail);
    const Token& t = Peek();
    if (t.kind != Tok::Word) fail();
    c.typeName = std::string(t.text);
    Take();
    if (AcceptSymbol("(")) {
        const Token& n = Peek();
        if (n.kind != Tok::Number) fail();
        c.sizeLiteral = n.literal;
        Take();
        if (AcceptSymbol(",")) {  // Counter(seed, increment)
            if (Peek().kind != Tok::Number) fail();
            Take();
        }
        if (!AcceptSymbol(")")) fail();
    }
    for (;;) {
        if (AtKeyword("NOT") && AtKeyword("NULL", 1)) {
            Take();
            Take();
            c.notNull = true;
        } else if (AcceptKeyword("NULL")) {
        } else if (AtKeyword("PRIMARY") && AtKeyword("KEY", 1)) {
            Take();
            Take();
            c.primaryKey = true;
        } else if (AcceptKeyword("UNIQUE")) {
            c.unique = true;
        } else if (AcceptKeyword("CONSTRAINT")) {
            ParseName(fail);
        } else {
            return c;
        }
    }
}

Statement Parser::ParseCreate() {
    Statement st;
    st.kind = Statement::Kind::CreateTable;
    Take();  // CREATE
    if (!AcceptKeyword("TABLE")) ThrowCreateTableSyntax();
    st.table = ParseName(&ThrowCreateTableSyntax);
    if (!AcceptSymbol("(")) ThrowCreateTableSyntax();
    do {
        // An item is a column, or a key over columns:
        // [CONSTRAINT name] PRIMARY KEY (a, …) | UNIQUE (a, …).
        bool named = AtKeyword("CONSTRAINT");
        if (named || (AtKeyword("PRIMARY") && AtKeyword("KEY", 1)) || AtKeyword("UNIQUE")) {
            if (named) {
                Take();
                ParseName(&ThrowCreateTableSyntax);
            }
            Statement::TableKey key;
            if (AtKeyword("PRIMARY") && AtKeyword("KEY", 1)) {
                Take();
                Take();
                key.primary = true;
            } else if (!AcceptKeyword("UNIQUE")) {
                ThrowCreateTableSyntax();
            }
            if (!AcceptSymbol("(")) ThrowCreateTableSyntax();
            do key.columns.push_back(ParseName(&ThrowCreateTableSyntax));
            while (AcceptSymbol(","));
            if (!AcceptSymbol(")")) ThrowCreateTableSyntax();
            st.tableKeys.push_back(std::move(key));
            continue;
        }
        st.columnSpecs.push_back(ParseColumnSpec(&ThrowCreateTableSyntax));
    } while (AcceptSymbol(","));
    if (!AcceptSymbol(")")) ThrowCreateTableSyntax();
    ExpectEnd();
    return st;
}

Statement Parser::ParseAlter() {
    Statement st;
    st.kind = Statement::Kind::AlterTable;
    Take();  // ALTER
    if (!AcceptKeyword("TABLE")) ThrowAlterTableSyntax();
    st.table = ParseName(&ThrowAlterTableSyntax);
    if (AcceptKeyword("ADD")) {
        AcceptKeyword("COLUMN");
        st.alter = Statement::Alter::Add;
        st.columnSpecs.push_back(ParseColumnSpec(&ThrowAlterTableSyntax));
    } else if (AcceptKeyword("DROP")) {
        AcceptKeyword("COLUMN");
        st.alter = Statement::Alter::Drop;
        st.dropColumn = ParseName(&ThrowAlterTableSyntax);
    } else if (AcceptKeyword("ALTER")) {
        AcceptKeyword("COLUMN");
        st.alter = Statement::Alter::AlterColumn;
        st.columnSpecs.push_back(ParseColumnSpec(&ThrowAlterTableSyntax));
    } else {
        ThrowAlterTableSyntax();
    }
    ExpectEnd();
    return st;
}

Statement Parser::ParseDrop() {
    Statement st;
    st.kind = Statement::Kind::DropTable;
    Take();  // DROP
    if (!AcceptKeyword("TABLE")) ThrowDropSyntax();
    st.table = ParseName(&ThrowDropSyntax);
    ExpectEnd();
    return st;
}

// ---------------------------------------------------------------- expressions

ExprPtr Parser::ParseCriteria() {
    if (AtEnd()) ThrowMissingOperator("");
    ExprPtr e = ParseClauseExpr();
    if (!AtEnd()) FailExpr(0);
    return e;
}

std::size_t Parser::ClauseEnd(std::size_t fromToken) const {
    int depth = 0;
    for (std::size_t k = fromToken; k < tokens_.size(); ++k) {
        const Token& t = tokens_[k];
        if (t.kind == Tok::End) return t.pos;
        if (t.kind == Tok::Symbol && t.text == "(") ++depth;
        if (t.kind == Tok::Symbol && t.text == ")" && --depth < 0) return t.pos;
        if (depth == 0) {
            if (t.kind == Tok::Symbol && (t.text == ";" || t.text == ",")) return t.pos;
            for (std::string_view kw : {"FROM", "WHERE", "GROUP", "HAVING", "ORDER"})
                if (IsKeyword(t, kw)) return t.pos;
        }
    }
    return key_.size();
}

void Parser::FailExpr(std::size_t clauseToken, int kind) {
    std::size_t begin = tokens_[clauseToken].pos;
    std::string text = Render(begin, ClauseEnd(clauseToken));
    if (kind == 1) ThrowMissingParen(text);
    if (kind == 2) ThrowCommaSyntax(text);
    ThrowMissingOperator(text);
}

ExprPtr Parser::ParseClauseExpr() {
    std::size_t saved = clauseToken_;
    clauseToken_ = i_;
    ExprPtr e = ParseExpr();
    // What may follow an expression in any clause; anything else is a
    // missing operator ("[a] = 1 [b]").
    const Token& t = Peek();
    bool ok = t.kind == Tok::End || (t.kind == Tok::Symbol && (t.text == ")" || t.text == "," || t.text == ";"));
    if (!ok && t.kind == Tok::Word) {
        for (std::string_view kw : {"FROM", "WHERE", "GROUP", "HAVING", "ORDER", "AS", "ASC", "DESC", "INNER",
                                     "LEFT", "RIGHT", "ON", "UNION", "JOIN"})
            if (IsKeyword(t, kw)) ok = true;
    }
    if (!ok) FailExpr(clauseToken_);
    clauseToken_ = saved;
    return e;
}

ExprPtr Parser::MakeBinary(std::string op, ExprPtr l, ExprPtr r) {
    auto e = std::make_unique<Expr>();
    e->kind = Expr::Kind::Binary;
    e->op = std::move(op);
    e->begin = l->begin;
    e->end = r->end;
    e->args.push_back(std::move(l));
    e->args.push_back(std::move(r));
    SetHeight(*e);
    return e;
}

ExprPtr Parser::ParseExpr() {
    DepthGuard guard(depth_);
    return ParseImp();
}

ExprPtr Parser::ParseImp() {
    ExprPtr l = ParseEqv();
    while (AcceptKeyword("IMP")) l = MakeBinary("IMP", std::move(l), ParseEqv());
    return l;
}

ExprPtr Parser::ParseEqv() {
    ExprPtr l = ParseXor();
    while (AcceptKeyword("EQV")) l = MakeBinary("EQV", std::move(l), ParseXor());
    return l;
}

ExprPtr Parser::ParseXor() {
    ExprPtr l = ParseOr();
    while (AcceptKeyword("XOR")) l = MakeBinary("XOR", std::move(l), ParseOr());
    return l;
}

ExprPtr Parser::ParseOr() {
    ExprPtr l = ParseAnd();
    while (AcceptKeyword("OR")) l = MakeBinary("OR", std::move(l), ParseAnd());
    return l;
}

ExprPtr Parser::ParseAnd() {
    ExprPtr l = ParseNot();
    // Inside "Between a And b" the And belongs to the Between; the
    // comparison level consumes it before we see it here.
    while (AcceptKeyword("AND")) l = MakeBinary("AND", std::move(l), ParseNot());
    return l;
}

ExprPtr Parser::ParseNot() {
    if (AtKeyword("NOT")) {
        DepthGuard guard(depth_);
        std::size_t begin = Take().pos;
        auto e = std::make_unique<Expr>();
        e->kind = Expr::Kind::Unary;
        e->op = "NOT";
        e->begin = begin;
        e->args.push_back(ParseNot());
        e->end = e->args[0]->end;
        SetHeight(*e);
        return e;
    }
    return ParseComparison();
}

ExprPtr Parser::ParseComparison() {
    ExprPtr l = ParseConcat();
    for (;;) {
        const Token& t = Peek();
        if (t.kind == Tok::Symbol &&
            (t.text == "=" || t.text == "<>" || t.text == "<" || t.text == ">" || t.text == "<=" ||
             t.text == ">=" || t.text == "!=" || t.text == "=<" || t.text == "=>")) {
            std::string op(t.text);
            if (op == "!=") op = "<>";
            if (op == "=<") op = "<=";
            if (op == "=>") op = ">=";
            Take();
            l = MakeBinary(op, std::move(l), ParseConcat());
            continue;
        }
        bool negated = false;
        std::size_t ahead = 0;
        if (AtKeyword("NOT") && (AtKeyword("LIKE", 1) || AtKeyword("IN", 1) || AtKeyword("BETWEEN", 1))) {
            negated = true;
            ahead = 1;
        }
        if (AtKeyword("LIKE", ahead)) {
            for (std::size_t k = 0; k <= ahead; ++k) Take();
            auto e = std::make_unique<Expr>();
            e->kind = Expr::Kind::Like;
            e->negated = negated;
            e->begin = l->begin;
            e->args.push_back(std::move(l));
            e->args.push_back(ParseConcat());
            e->end = e->args[1]->end;
            SetHeight(*e);
            l = std::move(e);
            continue;
        }
        if (AtKeyword("IS")) {
            Take();
            auto e = std::make_unique<Expr>();
            e->kind = Expr::Kind::IsNull;
            e->negated = AcceptKeyword("NOT");
            if (!AtKeyword("NULL")) FailExpr(clauseToken_);
            e->end = Take().pos + 4;
            e->begin = l->begin;
            e->args.push_back(std::move(l));
            SetHeight(*e);
            l = std::move(e);
            continue;
        }
        if (AtKeyword("IN", ahead)) {
            for (std::size_t k = 0; k <= ahead; ++k) Take();
            auto e = std::make_unique<Expr>();
            e->kind = Expr::Kind::In;
            e->negated = negated;
            e->begin = l->begin;
            e->args.push_back(std::move(l));
            if (!AcceptSymbol("(")) FailExpr(clauseToken_);
            if (AtKeyword("SELECT")) {
                e->subquery = ParseSelect(true);
            } else {
                do {
                    e->args.push_back(ParseExpr());
                } while (AcceptSymbol(","));
            }
            if (!AtSymbol(")")) FailExpr(clauseToken_, 1);
            e->end = Take().pos + 1;
            SetHeight(*e);
            l = std::move(e);
            continue;
        }
        if (AtKeyword("BETWEEN", ahead)) {
            for (std::size_t k = 0; k <= ahead; ++k) Take();
            auto e = std::make_unique<Expr>();
            e->kind = Expr::Kind::Between;
            e->negated = negated;
            e->begin = l->begin;
            e->args.push_back(std::move(l));
            e->args.push_back(ParseConcat());
            if (!AcceptKeyword("AND")) FailExpr(clauseToken_);
            e->args.push_back(ParseConcat());
            e->end = e->args[2]->end;
            SetHeight(*e);
            l = std::move(e);
            continue;
        }
        return l;
    }
}

ExprPtr Parser::ParseConcat() {
    ExprPtr l = ParseAdditive();
    while (AcceptSymbol("&")) l = MakeBinary("&", std::move(l), ParseAdditive());
    return l;
}

ExprPtr Parser::ParseAdditive() {
    ExprPtr l = ParseMod();
    for (;;) {
        if (AcceptSymbol("+")) l = MakeBinary("+", std::move(l), ParseMod());
        else if (AcceptSymbol("-")) l = MakeBinary("-", std::move(l), ParseMod());
        else return l;
    }
}

ExprPtr Parser::ParseMod() {
    ExprPtr l = ParseIntDiv();
    while (AcceptKeyword("MOD")) l = MakeBinary("MOD", std::move(l), ParseIntDiv());
    return l;
}

ExprPtr Parser::ParseIntDiv() {
    ExprPtr l = ParseMultiplicative();
    while (AcceptSymbol("\\")) l = MakeBinary("\\", std::move(l), ParseMultiplicative());
    return l;
}

ExprPtr Parser::ParseMultiplicative() {
    ExprPtr l = ParseUnary();
    for (;;) {
        if (AtSymbol("*")) {
            Take();
            l = MakeBinary("*", std::move(l), ParseUnary());
        } else if (AcceptSymbol("/")) {
            l = MakeBinary("/", std::move(l), ParseUnary());
        } else {
            return l;
        }
    }
}

ExprPtr Parser::ParseUnary() {
    if (AtSymbol("-") || AtSymbol("+")) {
        DepthGuard guard(depth_);
        Token t = Take();
        auto e = std::make_unique<Expr>();
        e->kind = Expr::Kind::Unary;
        e->op = std::string(t.text);
        e->begin = t.pos;
        e->args.push_back(ParseUnary());
        e->end = e->args[0]->end;
        SetHeight(*e);
        return e;
    }
    return ParsePower();
}

ExprPtr Parser::ParsePower() {
    ExprPtr l = ParsePrimary();
    while (AcceptSymbol("^")) l = MakeBinary("^", std::move(l), ParsePrimary());
    return l;
}

ExprPtr Parser::ParsePrimary() {
    DepthGuard guard(depth_);
    const Token t = Peek();
    auto e = std::make_unique<Expr>();
    e->begin = t.pos;
    switch (t.kind) {
    case Tok::String:
    case Tok::Number:
        Take();
        e->kind = Expr::Kind::Literal;
        e->literal = t.literal;
        e->isText = t.kind == Tok::String;
        e->end = t.pos + 1;
        return e;
    case Tok::Symbol:
        if (t.text == "(") {
            Take();
            if (AtKeyword("SELECT")) {
                e->kind = Expr::Kind::Subquery;
                e->subquery = ParseSelect(true);
            } else {
                e = ParseExpr();
            }
            if (!AtSymbol(")")) FailExpr(clauseToken_, AtSymbol(",") ? 2 : 1);
            e->end = Take().pos + 1;
            return e;
        }
        if (t.text == "*") {
            Take();
            e->kind = Expr::Kind::Star;
            e->end = t.pos + 1;
            return e;
        }
        FailExpr(clauseToken_, t.text == "," ? 2 : 0);
    case Tok::End:
        FailExpr(clauseToken_);
    case Tok::Word:
        if (IsKeyword(t, "NULL")) {
            Take();
            e->kind = Expr::Kind::Null;
            e->end = t.pos + 4;
            return e;
        }
        if (IsKeyword(t, "TRUE") || IsKeyword(t, "FALSE")) {
            Take();
            e->kind = Expr::Kind::Boolean;
            e->boolean = IsKeyword(t, "TRUE");
            e->end = t.pos + t.text.size();
            return e;
        }
        if (IsKeyword(t, "EXISTS")) {
            Take();
            if (!AcceptSymbol("(") || !AtKeyword("SELECT")) FailExpr(clauseToken_);
            e->kind = Expr::Kind::Exists;
            e->subquery = ParseSelect(true);
            if (!AtSymbol(")")) FailExpr(clauseToken_, 1);
            e->end = Take().pos + 1;
            return e;
        }
        // Asc, Left and Right are functions as well as keywords.
        if (IsReserved(t) && !((IsKeyword(t, "ASC") || IsKeyword(t, "LEFT") || IsKeyword(t, "RIGHT")) &&
                               AtSymbol("(", 1)))
            FailExpr(clauseToken_);
        if (AtSymbol("(", 1)) {
            Take();
            Take();
            e->kind = Expr::Kind::Call;
            e->name = std::string(t.text);
            if (!AtSymbol(")")) {
                do {
                    e->args.push_back(ParseExpr());
                } while (AcceptSymbol(","));
            }
            if (!AtSymbol(")")) FailExpr(clauseToken_, AtSymbol(",") ? 2 : 1);
            e->end = Take().pos + 1;
            SetHeight(*e);
            return e;
        }
        [[fallthrough]];
    case Tok::Bracket: {
        Take();
        e->kind = Expr::Kind::Column;
        e->name = std::string(t.text);
        e->end = t.pos + t.text.size() + (t.kind == Tok::Bracket ? 2 : 0);
        if ((AtSymbol(".") || AtSymbol("!"))) {
            const Token& n = Peek(1);
            if (n.kind == Tok::Bracket || n.kind == Tok::Word) {
                Take();
                Take();
                e->qualifier = std::move(e->name);
                e->name = std::string(n.text);
                e->end = n.pos + n.text.size() + (n.kind == Tok::Bracket ? 2 : 0);
            } else if (n.kind == Tok::Symbol && n.text == "*") {
                Take();
                Take();
                e->kind = Expr::Kind::Star;
                e->qualifier = std::move(e->name);
                e->name.clear();
                e->end = n.pos + 1;
            } else {
                FailExpr(clauseToken_);
            }
        }
        return e;
    }
    }
    FailExpr(clauseToken_);
}

}  // namespace zelvo::dao::jet
