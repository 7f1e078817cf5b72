// ValueConv: the only road from a field's value to a C++ value, and back.
//
// The book's columns may hold Null where a program would expect 0 or an
// empty text (a root's parent, an unset name); reading through these
// conversions makes Null, 0 and "" read alike, so no caller has to care.
#pragma once

#include <cstdint>
#include <string>

#include "platform/core/variant.h"

namespace zelvo::ValueConv {

// An identity, a type code, an owner type: 0 for Null or a non-number.
std::int32_t ToLong(const Variant& v);
// A text column: "" for Null; numbers in plain decimal.
std::string ToText(const Variant& v);
// A Yes/No column: False for Null; any non-zero number is True.
bool ToBool(const Variant& v);

// The value to store for a text that may be empty: Null for "", so that a
// column that does not allow zero-length texts takes it too.
Variant TextToField(const std::string& text);
// The value to store for a reference that may be 0 (a parent): the number.
Variant LongToField(std::int32_t value);
// The word for a Boolean in a criteria or SQL text: "True" or "False".
std::string BoolToSql(bool value);

}  // namespace zelvo::ValueConv
