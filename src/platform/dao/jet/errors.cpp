#include "platform/dao/jet/errors.h"

namespace zelvo::dao::jet {

namespace {

[[noreturn]] void Raise(int number, std::string text) {
    throw Error(number, std::move(text), kErrorSource);
}

std::string Quoted(std::string_view s) { return "'" + std::string(s) + "'"; }

}  // namespace

void ThrowMissingOperator(std::string_view expr) {
    Raise(3075, "Syntax error (missing operator) in query expression " + Quoted(expr) + ".");
}
void ThrowStringSyntax(std::string_view expr) {
    Raise(3075, "Syntax error in string in query expression " + Quoted(expr) + ".");
}
void ThrowMissingParen(std::string_view expr) {
    Raise(3075, "Missing ), ], or Item in query expression " + Quoted(expr) + ".");
}
void ThrowCommaSyntax(std::string_view expr) {
    Raise(3075, "Syntax error (comma) in query expression " + Quoted(expr) + ".");
}
void ThrowUndefinedFunction(std::string_view name, std::string_view expr) {
    Raise(3085, "Undefined function " + Quoted(name) + " in expression.");
}
void ThrowWrongArgumentCount(std::string_view name, std::string_view expr) {
    Raise(3075, "Wrong number of arguments used with function in query expression " + Quoted(expr) + ".");
}
void ThrowFromSyntax() { Raise(3131, "Syntax error in FROM clause."); }
void ThrowInsertSyntax() { Raise(3134, "Syntax error in INSERT INTO statement."); }
void ThrowUpdateSyntax() { Raise(3144, "Syntax error in UPDATE statement."); }
void ThrowOrderBySyntax() { Raise(3138, "Syntax error in ORDER BY clause."); }
void ThrowSelectSyntax() {
    Raise(3141,
          "The SELECT statement includes a reserved word or an argument name that is misspelled or "
          "missing, or the punctuation is incorrect.");
}
void ThrowCharactersAfterEnd() { Raise(3142, "Characters found after end of SQL statement."); }
void ThrowCreateTableSyntax() { Raise(3290, "Syntax error in CREATE TABLE statement."); }
void ThrowAlterTableSyntax() { Raise(3293, "Syntax error in ALTER TABLE statement."); }
void ThrowDropSyntax() { Raise(3295, "Syntax error in DROP TABLE or DROP INDEX."); }
void ThrowNotAStatement() {
    Raise(3129, "Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'.");
}
void ThrowTooFewParameters(int expected) {
    Raise(3061, "Too few parameters. Expected " + std::to_string(expected) + ".");
}
void ThrowUnknownInput(std::string_view name) {
    Raise(3078, "The Microsoft Jet database engine cannot find the input table or query " + Quoted(name) +
                    ". Make sure it exists and that its name is spelled correctly.");
}
void ThrowAmbiguousField(std::string_view name) {
    Raise(3079, "The field " + Quoted(name) +
                    " could refer to more than one table listed in the FROM clause of your SQL statement.");
}
void ThrowUnknownFieldInCriteria(std::string_view name) {
    Raise(3070, "The Microsoft Jet database engine does not recognize " + Quoted(name) +
                    " as a valid field name or expression.");
}
void ThrowUnknownInsertField(std::string_view name) {
    Raise(3127, "The INSERT INTO statement contains the following unknown field name: " + Quoted(name) +
                    ". Make sure you have typed the name correctly, and try the operation again.");
}
void ThrowValueCountMismatch() {
    Raise(3346, "Number of query values and destination fields are not the same.");
}
void ThrowTableExists(std::string_view name) { Raise(3010, "Table " + Quoted(name) + " already exists."); }
void ThrowNoSuchTable(std::string_view name) { Raise(3376, "Table " + Quoted(name) + " does not exist."); }
void ThrowFieldExists(std::string_view field, std::string_view table) {
    Raise(3380, "Field " + Quoted(field) + " already exists in table " + Quoted(table) + ".");
}
void ThrowItemNotFound() { Raise(3265, "Item not found in this collection."); }
void ThrowNotUpdatable() { Raise(3073, "Operation must use an updatable query."); }

}  // namespace zelvo::dao::jet
