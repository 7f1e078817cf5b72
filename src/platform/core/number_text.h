// How a text reads as a number, wherever the system turns one into the
// other: a field given a text, a DefaultValue, a host's argument, ValueConv.
// One reader, so that a text is the same number everywhere.
#pragma once

#include <optional>
#include <string_view>

namespace zelvo {

// The number a text stands for, as the runtime reads one: blanks around it
// are ignored; decimal with an optional sign, point and exponent ("+5",
// "-1.5e3", ".5"), or &H / &O for hexadecimal and octal ("&HFF"). Anything
// else — "1-2", "abc", "", "inf", "0x10" — is no number: nullopt.
std::optional<double> ParseNumber(std::string_view text);

}  // namespace zelvo
