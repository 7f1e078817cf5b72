// A small JSON writer for the command-line host's machine-readable output.
#pragma once

#include <string>
#include <string_view>

#include "zelvo/variant.h"

namespace zelvo::cli {

// `text` as a JSON string literal, quotes included.
std::string JsonString(std::string_view text);

// A value: null, a number, true/false, a string; bytes as a base64 string.
std::string JsonValue(const Variant& v);

}  // namespace zelvo::cli
