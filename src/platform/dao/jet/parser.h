// Recursive-descent parser of Jet SQL, with the operator precedence of the
// expression service Jet evaluates with (lowest first): Imp, Eqv, Xor, Or,
// And, Not, comparisons (= <> < > <= >= Like Is In Between), &, + -, Mod, \,
// * /, unary -, ^.
//
// Works on the key of a shape (literals are marks), so its trees hold literal
// indexes; the literal values are needed only for error texts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/core/variant.h"
#include "platform/dao/jet/ast.h"
#include "platform/dao/jet/lexer.h"

namespace zelvo::dao::jet {

class Parser {
public:
    Parser(std::string_view key, const std::vector<Variant>& literals);

    // One statement, with an optional trailing ";". Throws zelvo::Error with
    // the Jet numbers: 3129 not a statement, 3075 expression, 3131 FROM, 3134
    // INSERT, 3144 UPDATE, 3138 ORDER BY, 3142 text after the end, 3290/3293/
    // 3295 DDL.
    Statement ParseStatement();

    // A criteria string: one expression and nothing after it.
    ExprPtr ParseCriteria();

    // The key from `begin` to `end` with the literals written back, as Jet
    // shows an expression in its error texts.
    std::string Render(std::size_t begin, std::size_t end) const;

    const std::vector<Variant>& literals() const { return literals_; }

private:
    const Token& Peek(std::size_t ahead = 0) const;
    Token Take();
    bool IsKeyword(const Token& t, std::string_view kw) const;
    bool AtKeyword(std::string_view kw, std::size_t ahead = 0) const { return IsKeyword(Peek(ahead), kw); }
    bool AcceptKeyword(std::string_view kw);
    bool AtSymbol(std::string_view s, std::size_t ahead = 0) const;
    bool AcceptSymbol(std::string_view s);
    bool IsReserved(const Token& t) const;
    bool AtEnd() const;
    void ExpectEnd();

    std::unique_ptr<Select> ParseSelect(bool nested);
    void ParseSelectList(Select& s);
    void ParseFromList(std::vector<FromPtr>& out);
    FromPtr ParseFromItem();
    FromPtr ParseFromPrimary();
    Statement ParseInsert();
    Statement ParseUpdate();
    Statement ParseDelete();
    Statement ParseCreate();
    Statement ParseAlter();
    Statement ParseDrop();
    ColumnSpec ParseColumnSpec(void (*fail)());
    std::string ParseName(void (*fail)());

    // An expression of a clause: parsed, then checked to end where a clause
    // may end, else 3075 with the clause's text.
    ExprPtr ParseClauseExpr();
    [[noreturn]] void FailExpr(std::size_t clauseStart, int kind = 0);
    std::size_t ClauseEnd(std::size_t fromToken) const;

    ExprPtr ParseExpr();
    ExprPtr ParseImp();
    ExprPtr ParseEqv();
    ExprPtr ParseXor();
    ExprPtr ParseOr();
    ExprPtr ParseAnd();
    ExprPtr ParseNot();
    ExprPtr ParseComparison();
    ExprPtr ParseConcat();
    ExprPtr ParseAdditive();
    ExprPtr ParseMod();
    ExprPtr ParseIntDiv();
    ExprPtr ParseMultiplicative();
    ExprPtr ParseUnary();
    ExprPtr ParsePower();
    ExprPtr ParsePrimary();
    ExprPtr MakeBinary(std::string op, ExprPtr l, ExprPtr r);

    std::string_view key_;
    const std::vector<Variant>& literals_;
    std::vector<Token> tokens_;
    std::size_t i_ = 0;
    std::size_t clauseToken_ = 0;  // the token where the current clause's expression began
    int depth_ = 0;                // nesting, to bound recursion on hostile input
};

}  // namespace zelvo::dao::jet
