// Late binding: creating the public classes by name and reaching their
// members by name, with their arguments as variants, as an automation client
// does.
//
// Each public class has a descriptor (`DispClass`): its name, its members and
// a factory. `CreateObject("cAddressbook")` makes an object and gives it as a
// `DispatchObject`, through which every member is reached by name.
//
// Each public member has an entry: its name, its parameters in order with
// their types, which are by reference, which are optional and with which
// default, and its result. `Invoke` finds the entry (names ignore case),
// converts each argument to its parameter's type, fills in the defaults,
// calls, and writes the by-reference arguments back into the caller's
// arguments. Objects are passed beside the values: the host's list and data
// controls as pointers, objects of the public classes as shared handles. A
// member may give an object of a public class as its result.
//
// Adding a public class: write its member table with `DispEntry<T>` and
// `MakeDispClass<T>` (src/automation/dispatch_table.h) in a function that
// returns its descriptor, and add that function to the list in
// src/automation/public_classes.cpp. Nothing else knows the classes: the
// command-line host and the Python module find them through `PublicClasses()`.
//
// Errors, with the numbers of the runtime the book was written for:
//   429  no public class of that name (CreateObject)
//   438  no member of that name (or not a property, for a property access)
//   383  a read-only property was given a value
//   449  a required argument is missing
//   450  too many arguments
//   13   an argument cannot be converted to its parameter's type
//   6    a number too large for a Long or an Integer
//   424  an object parameter was given a value (or no object)
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
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
class DispClass;
class DispatchObject;

enum class DispType { Long, Integer, Boolean, String, Variant, Object };

// The type's name as a signature shows it: "Long", "String", "Object" ...
const char* DispTypeName(DispType type);

// An object passed for an Object parameter: a control of the host, or an
// object of a public class.
using DispObject =
    std::variant<std::monostate, ui::ListView*, ui::DataControl*, std::shared_ptr<DispatchObject>>;

// One argument of a call, or what a call gives. Leave `value` empty for an
// optional argument that is not given. For an Object parameter set `object`
// instead; a member of Object type gives its object there.
struct DispArg {
    std::optional<Variant> value;
    DispObject object;

    DispArg() = default;
    DispArg(Variant v) : value(std::move(v)) {}
    DispArg(ui::ListView* list) : object(list) {}
    DispArg(ui::DataControl* data) : object(data) {}
    DispArg(std::shared_ptr<DispatchObject> obj) : object(std::move(obj)) {}

    bool HasObject() const { return !std::holds_alternative<std::monostate>(object); }
    // The object of a public class it carries; nullptr when it carries none.
    std::shared_ptr<DispatchObject> Object() const {
        auto p = std::get_if<std::shared_ptr<DispatchObject>>(&object);
        return p ? *p : nullptr;
    }
    // The value, Null when there is none (a Sub's result, an object).
    Variant ValueOrNull() const { return value ? *value : Variant(); }
};

// What a member gives: a value (Null for a Sub), or an object.
using DispResult = DispArg;

struct DispParam {
    std::string name;
    DispType type;
    bool byRef = false;
    bool optional = false;
    std::optional<Variant> defaultValue = {};  // for optional parameters that have one
};

enum class DispKind { Method, Property };

struct DispMember {
    std::string name;
    DispKind kind = DispKind::Method;
    std::vector<DispParam> params;     // a property has none
    std::optional<DispType> result;    // none for a Sub; a property's type
    bool readOnly = false;             // properties only
    std::string summary;               // one line for a listing
    std::string resultClass = {};      // an Object result: the public class it is, when known
};

// A public class: its name, its members and how to make one. Made by
// `MakeDispClass<T>` (src/automation/dispatch_table.h); hosts only read it.
class DispClass {
public:
    // How the members reach the object; one per member, in the same order.
    // A method has `call`; a property `get`, and `set` unless read-only.
    struct Binding {
        std::function<DispResult(DispatchObject&, std::vector<Variant>& values, std::vector<DispObject>& objects)>
            call;
        std::function<DispResult(const DispatchObject&)> get;
        std::function<void(DispatchObject&, const Variant&)> set;  // the value already converted
    };
    // Makes a new object of the class; empty for a class a host cannot create.
    using Factory = std::function<std::shared_ptr<DispatchObject>(const DispClass&)>;

    DispClass(std::string name, std::vector<DispMember> members, std::vector<Binding> bindings, Factory factory);

    const std::string& Name() const { return name_; }
    // The members in the order of the class's interface.
    std::span<const DispMember> Members() const { return members_; }
    // nullptr when there is none of that name (compared without regard to case).
    const DispMember* FindMember(std::string_view name) const;
    bool Creatable() const { return static_cast<bool>(factory_); }
    // A new object of the class; error 429 when the class cannot be created.
    std::shared_ptr<DispatchObject> Create() const;
    // The binding of `member`, which must be one of Members().
    const Binding& BindingOf(const DispMember& member) const;

private:
    std::string name_;
    std::vector<DispMember> members_;
    std::vector<Binding> bindings_;
    Factory factory_;
};

// An object of a public class as a late-bound client holds it. The calls
// raise the errors listed at the top as `Error`s; an error of the member
// itself passes through unchanged.
class DispatchObject {
public:
    virtual ~DispatchObject() = default;
    virtual const DispClass& Class() const = 0;

    // Calls the member `name` with `args` (fewer than the parameters when the
    // rest are optional). By-reference value arguments get their value after
    // the call. A property is read with no argument and set with one value.
    DispResult Invoke(std::string_view name, std::vector<DispArg>& args);
    // Reads a property; an Object property gives its object.
    DispResult GetProperty(std::string_view name) const;
    // Sets a property, converting `value` to its type first.
    void SetProperty(std::string_view name, const Variant& value);
};

// A C++ object of type T seen as a DispatchObject. It shares the ownership of
// the object, or borrows it when made from a plain reference (the caller
// then keeps it alive as long as the handle).
template <class T>
class DispatchHandle final : public DispatchObject {
public:
    DispatchHandle(const DispClass& cls, std::shared_ptr<T> object) : class_(cls), object_(std::move(object)) {}
    DispatchHandle(const DispClass& cls, T& object) : class_(cls), object_(std::shared_ptr<T>(), &object) {}

    const DispClass& Class() const override { return class_; }
    T& Object() const { return *object_; }
    const std::shared_ptr<T>& Shared() const { return object_; }

private:
    const DispClass& class_;
    std::shared_ptr<T> object_;
};

// The public classes, in the order they were registered.
std::span<const DispClass* const> PublicClasses();
// The class of that name, without regard to case; the type library's prefix
// ("Zelvolib.cAddressbook") is accepted. nullptr when there is none.
const DispClass* FindPublicClass(std::string_view name);
// A new object of the public class `className`: error 429 "ActiveX component
// can't create object" when there is no such class or it cannot be created.
std::shared_ptr<DispatchObject> CreateObject(std::string_view className);

// The descriptor of cAddressbook.
const DispClass& cAddressbookClass();

// The calls below reach one cAddressbook the caller holds, as a
// DispatchHandle borrowing it would.

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
