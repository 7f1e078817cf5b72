// The errors the translator raises, with the numbers and texts of the Jet
// engine, so that code written against those numbers keeps working.
#pragma once

#include <string>
#include <string_view>

#include "platform/core/error.h"

namespace zelvo::dao::jet {

inline constexpr const char* kErrorSource = "DAO.Jet";

[[noreturn]] void ThrowMissingOperator(std::string_view expr);   // 3075
[[noreturn]] void ThrowStringSyntax(std::string_view expr);      // 3075, bad string literal
[[noreturn]] void ThrowMissingParen(std::string_view expr);      // 3075, unclosed ( or [
[[noreturn]] void ThrowCommaSyntax(std::string_view expr);       // 3075, stray comma
[[noreturn]] void ThrowUndefinedFunction(std::string_view name, std::string_view expr);  // 3085
[[noreturn]] void ThrowWrongArgumentCount(std::string_view name, std::string_view expr);  // 3075
[[noreturn]] void ThrowFromSyntax();                             // 3131
[[noreturn]] void ThrowInsertSyntax();                           // 3134
[[noreturn]] void ThrowUpdateSyntax();                           // 3144
[[noreturn]] void ThrowOrderBySyntax();                          // 3138
[[noreturn]] void ThrowSelectSyntax();                           // 3141
[[noreturn]] void ThrowCharactersAfterEnd();                     // 3142
[[noreturn]] void ThrowCreateTableSyntax();                      // 3290
[[noreturn]] void ThrowAlterTableSyntax();                       // 3293
[[noreturn]] void ThrowDropSyntax();                             // 3295
[[noreturn]] void ThrowNotAStatement();                          // 3129
[[noreturn]] void ThrowTooFewParameters(int expected);           // 3061
[[noreturn]] void ThrowUnknownInput(std::string_view name);      // 3078
[[noreturn]] void ThrowAmbiguousField(std::string_view name);    // 3079
[[noreturn]] void ThrowUnknownFieldInCriteria(std::string_view name);  // 3070
[[noreturn]] void ThrowUnknownInsertField(std::string_view name);      // 3127
[[noreturn]] void ThrowValueCountMismatch();                     // 3346
[[noreturn]] void ThrowTableExists(std::string_view name);       // 3010
[[noreturn]] void ThrowNoSuchTable(std::string_view name);       // 3376
[[noreturn]] void ThrowFieldExists(std::string_view field, std::string_view table);  // 3380
[[noreturn]] void ThrowItemNotFound();                           // 3265
[[noreturn]] void ThrowNotUpdatable();                           // 3073

}  // namespace zelvo::dao::jet
