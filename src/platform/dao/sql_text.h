// Small helpers for SQLite texts the engine writes itself.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::dao::detail {

// Renumbers the parameters ?N of an SQLite text to ?(N+offset), so that a
// translated criteria text can follow the parameters of the query it is
// applied to. Quoted names and literals are passed over.
std::string ShiftParameters(std::string_view sql, int offset);

}  // namespace zelvo::dao::detail

#include <vector>

#include "platform/core/variant.h"

namespace zelvo::dao::detail {

// Writes the literals into an SQLite text in place of their parameters ?N
// (texts quoted, numbers in decimal): for a saved query, which is a view and
// so cannot take parameters.
std::string InlineParameters(std::string_view sql, const std::vector<Variant>& literals);

// A value as an SQLite literal.
std::string SqlLiteral(const Variant& v);

}  // namespace zelvo::dao::detail
