#include "platform/core/value_conv.h"

namespace zelvo::ValueConv {

std::int32_t ToLong(const Variant& v) { return static_cast<std::int32_t>(v.AsInteger()); }

std::string ToText(const Variant& v) { return v.AsText(); }

bool ToBool(const Variant& v) { return v.AsInteger() != 0; }

Variant TextToField(const std::string& text) { return text.empty() ? Variant() : Variant(text); }

Variant LongToField(std::int32_t value) { return Variant(static_cast<std::int64_t>(value)); }

std::string BoolToSql(bool value) { return value ? "True" : "False"; }

}  // namespace zelvo::ValueConv
