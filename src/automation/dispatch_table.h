// Writing the member table of a public class.
//
// A class's table is a list of `DispEntry<T>`: the member's signature and the
// code that reaches the C++ object. `MakeDispClass<T>` turns the list into the
// class's descriptor; the generic dispatch (zelvo/dispatch.h) checks the
// arguments against the signature and converts them before an entry's code
// runs, so the code may take `values[i]` to be of its parameter's type and a
// missing optional argument to hold its default.
//
//   const DispClass& dbPhotoClass() {
//       using T = DispType;
//       static const DispClass cls = MakeDispClass<dbPhoto>("dbPhoto", {
//           {{"Width", DispKind::Property, {}, T::Long, true, "the photo's width"}, nullptr,
//            [](const dbPhoto& p) { return Variant(std::int64_t{p.Width()}); }},
//       });
//       return cls;
//   }
//
// and then one line in src/automation/public_classes.cpp.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/core/error.h"
#include "zelvo/dispatch.h"

namespace zelvo {

template <class T>
struct DispEntry {
    DispMember info;
    // A method: `values` and `objects` hold one slot per parameter.
    std::function<DispResult(T&, std::vector<Variant>& values, std::vector<DispObject>& objects)> call{};
    // A property: read, and written unless it is read-only.
    std::function<DispResult(const T&)> get{};
    std::function<void(T&, const Variant&)> set{};
};

// The descriptor of public class T named `name`. By default a host creates a
// T with `std::make_shared<T>()`; pass `creatable = false` for a class a host
// only receives from another member.
template <class T>
DispClass MakeDispClass(std::string name, const std::vector<DispEntry<T>>& entries, bool creatable = true) {
    std::vector<DispMember> members;
    std::vector<DispClass::Binding> bindings;
    for (const DispEntry<T>& e : entries) {
        members.push_back(e.info);
        DispClass::Binding b;
        if (e.call)
            b.call = [call = e.call](DispatchObject& o, std::vector<Variant>& v, std::vector<DispObject>& obj) {
                return call(static_cast<DispatchHandle<T>&>(o).Object(), v, obj);
            };
        if (e.get)
            b.get = [get = e.get](const DispatchObject& o) {
                return get(static_cast<const DispatchHandle<T>&>(o).Object());
            };
        if (e.set)
            b.set = [set = e.set](DispatchObject& o, const Variant& v) {
                set(static_cast<DispatchHandle<T>&>(o).Object(), v);
            };
        bindings.push_back(std::move(b));
    }
    DispClass::Factory factory;
    if constexpr (std::is_default_constructible_v<T>) {
        if (creatable)
            factory = [](const DispClass& cls) -> std::shared_ptr<DispatchObject> {
                return std::make_shared<DispatchHandle<T>>(cls, std::make_shared<T>());
            };
    }
    return DispClass(std::move(name), std::move(members), std::move(bindings), std::move(factory));
}

// The object a host passed for an Object parameter, as a T: a host control
// (ui::ListView, ui::DataControl) or an object of a public class. nullptr
// when none was passed; error 13 when it is of another kind.
template <class T>
T* ObjectArg(const DispObject& o) {
    if (std::holds_alternative<std::monostate>(o)) return nullptr;
    if constexpr (std::is_same_v<T, ui::ListView> || std::is_same_v<T, ui::DataControl>) {
        if (auto p = std::get_if<T*>(&o)) return *p;
    } else {
        if (auto p = std::get_if<std::shared_ptr<DispatchObject>>(&o))
            if (auto h = dynamic_cast<DispatchHandle<T>*>(p->get())) return &h->Object();
    }
    throw Error(13, "Type mismatch", "Zelvolib");
}

// An object of public class `cls` to give as a member's result.
template <class T>
DispResult ObjectResult(const DispClass& cls, std::shared_ptr<T> object) {
    return DispResult(std::shared_ptr<DispatchObject>(std::make_shared<DispatchHandle<T>>(cls, std::move(object))));
}

}  // namespace zelvo
