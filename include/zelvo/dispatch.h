// Late binding: reaching the members of the public classes by name, with
// their arguments as variants, as an automation client does.
//
// Each public member has an entry: its name, its parameters in order with
// their types, which are by reference, which are optional and with which
// default, and its result. `Invoke` finds the entry (names ignore case),
// converts each argument to its parameter's type, fills in the defaults,
// calls, and writes the by-reference arguments back into the caller's
// arguments. Objects (list and data controls of the host) are passed as
// pointers beside the values.
//
// Errors, with the numbers of the runtime the book was written for:
//   438  no member of that name (or not a property, for a property access)
//   449  a required argument is missing
//   450  too many arguments
//   13   an argument cannot be converted to its parameter's type
//   6    a number too large for a Long or an Integer
//   424  an object parameter was given a value (or no object)
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/core/variant.h"
#include "platform/ui/data_control.h"
#include "platform/ui/listview.h"

namespace zelvo {

class cAddressbook;

enum class DispType { Long, Integer, Boolean, String, Variant, Object };

// The type's name as a signature shows it: "Long", "String", "Object" ...
const char* DispTypeName(DispType type);

// A control the host passes for an Object parameter.
using DispObject = std::variant<std::monostate, ui::ListView*, ui::DataControl*>;

// One argument of a call. Leave `value` empty for an optional argument that
// is not given. For an Object parameter set `object` instead.
struct DispArg {
    std::optional<Variant> value;
    DispObject object;

    DispArg() = default;
    DispArg(Variant v) : value(std::move(v)) {}
    DispArg(ui::ListView* list) : object(list) {}
    DispArg(ui::DataControl* data) : object(data) {}
};

struct DispParam {
    std::string name;
    DispType type;
    bool byRef = false;
    bool optional = false;
    std::optional<Variant> defaultValue;  // for optional parameters that have one
};

enum class DispKind { Method, Property };

struct DispMember {
    std::string name;
    DispKind kind = DispKind::Method;
    std::vector<DispParam> params;     // a property has none
    std::optional<DispType> result;    // none for a Sub; a property's type
    bool readOnly = false;             // properties only
    std::string summary;               // one line for a listing
};

// The members of cAddressbook, in the order of its interface.
std::span<const DispMember> cAddressbookMembers();
// nullptr when there is none of that name (compared without regard to case).
const DispMember* FindcAddressbookMember(std::string_view name);

// Calls the method `name` of `book` with `args` (fewer than the parameters
// when the rest are optional). By-reference value arguments get their value
// after the call. Returns the result, Null for a Sub.
Variant Invoke(cAddressbook& book, std::string_view name, std::vector<DispArg>& args);

// Reads and sets a property of `book` by name.
Variant GetProperty(const cAddressbook& book, std::string_view name);
void SetProperty(cAddressbook& book, std::string_view name, const Variant& value);

// The conversions of the calls: a value to a parameter's type, as the
// runtime converts (13 type mismatch, 6 overflow, 94 invalid use of Null).
Variant CoerceTo(const Variant& value, DispType type);

}  // namespace zelvo
