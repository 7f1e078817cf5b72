// The Python module `zelvo`: the library's public classes as Python objects.
//
//   import zelvo
//   ab = zelvo.create("cAddressbook")
//   ab.AppPath = "/tmp/book"
//   result, path = ab.CorrectDB("")        # by-reference arguments come back
//   rows = zelvo.ListView(["Name", "Type", "E-mail"])
//   ab.Navigate(rows, None)                # None is Nothing for an object
//   for row in rows.rows: print(row["text"])
//
// Members are looked up by name in the library's registry at each access,
// as a late-bound client does; nothing here lists them. A method with
// by-reference value arguments returns a tuple: its result, then those
// arguments as the call left them, in order. Errors of the library raise
// zelvo.Error with .number, .description and .source.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <unordered_map>

#include "python_values.h"
#include "zelvo/data_control.h"
#include "zelvo/dispatch.h"
#include "zelvo/error.h"
#include "zelvo/listview.h"

namespace zelvo::python {

namespace {

PyObject* g_error = nullptr;  // zelvo.Error

[[noreturn]] void RaisePython(const Error& e, const std::string& where) {
    std::string message = where + ": " + e.description() + " (" + std::to_string(e.number()) + ")";
    py::object error = py::reinterpret_borrow<py::object>(g_error)(message);
    error.attr("number") = e.number();
    error.attr("description") = e.description();
    error.attr("source") = e.source();
    PyErr_SetObject(g_error, error.ptr());
    throw py::error_already_set();
}

std::string Where(const DispatchObject& object, const std::string& member) {
    return object.Class().Name() + "." + member;
}

// Calls method `member` of `object` with Python's positional and keyword
// arguments, each converted for its parameter.
py::object CallMethod(const std::shared_ptr<DispatchObject>& object, const DispMember& member, const py::args& args,
                      const py::kwargs& kwargs) {
    const std::string where = Where(*object, member.name);
    const auto& params = member.params;
    if (args.size() > params.size())
        throw py::type_error(where + " takes " + std::to_string(params.size()) + " argument" +
                             (params.size() == 1 ? "" : "s") + ", not " + std::to_string(args.size()));
    std::vector<DispArg> dispArgs;
    for (size_t i = 0; i < args.size(); ++i)
        dispArgs.push_back(ToArg(args[i], params[i], where + " argument " + std::to_string(i + 1) + " (" + params[i].name + ")"));
    for (const auto& [key, value] : kwargs) {
        std::string name = py::str(key);
        size_t i = 0;
        while (i < params.size() && !SameDispName(params[i].name, name)) ++i;
        if (i == params.size()) throw py::type_error(where + " has no argument named '" + name + "'");
        if (i < args.size()) throw py::type_error(where + " got argument '" + params[i].name + "' twice");
        if (dispArgs.size() <= i) dispArgs.resize(i + 1);
        dispArgs[i] = ToArg(value, params[i], where + " argument '" + params[i].name + "'");
    }

    DispResult result;
    try {
        py::gil_scoped_release release;
        result = object->Invoke(member.name, dispArgs);
    } catch (const Error& e) {
        RaisePython(e, where);
    }

    py::list byRef;
    for (size_t i = 0; i < params.size() && i < dispArgs.size(); ++i)
        if (params[i].byRef && params[i].type != DispType::Object && dispArgs[i].value)
            byRef.append(FromVariant(*dispArgs[i].value));
    if (byRef.empty()) return FromResult(result);
    py::list all;
    all.append(FromResult(result));
    for (auto v : byRef) all.append(v);
    return py::tuple(all);
}

const DispMember& FindMember(const DispatchObject& object, const std::string& name) {
    const DispMember* member = object.Class().FindMember(name);
    if (!member)
        throw py::attribute_error(object.Class().Name() + " has no member '" + name + "'");
    return *member;
}

// The method `member` as a Python function of (self, *args, **kwargs), made
// once per member: an attribute access then only binds it to the object.
py::object MethodFunction(const DispMember& member) {
    // Kept for the life of the process: freeing Python objects after the
    // interpreter has ended would crash at exit.
    static auto& made = *new std::unordered_map<const DispMember*, py::object>;
    auto found = made.find(&member);
    if (found != made.end()) return found->second;
    py::cpp_function function(
        [&member](const std::shared_ptr<DispatchObject>& self, const py::args& args, const py::kwargs& kwargs) {
            return CallMethod(self, member, args, kwargs);
        },
        py::name(member.name.c_str()), py::doc(member.summary.c_str()));
    return made.emplace(&member, std::move(function)).first->second;
}

py::object GetAttribute(const py::object& self, const std::string& name) {
    auto object = self.cast<std::shared_ptr<DispatchObject>>();
    const DispMember& member = FindMember(*object, name);
    if (member.kind == DispKind::Property) {
        try {
            return FromResult(object->GetProperty(member.name));
        } catch (const Error& e) {
            RaisePython(e, Where(*object, member.name));
        }
    }
    return py::reinterpret_steal<py::object>(PyMethod_New(MethodFunction(member).ptr(), self.ptr()));
}

void SetAttribute(const std::shared_ptr<DispatchObject>& object, const std::string& name, const py::handle& value) {
    const DispMember& member = FindMember(*object, name);
    std::string where = Where(*object, member.name);
    if (member.kind != DispKind::Property) throw py::attribute_error(where + " is a method, not a property");
    Variant v = ToVariant(value, where);
    try {
        object->SetProperty(member.name, v);
    } catch (const Error& e) {
        RaisePython(e, where);
    }
}

py::dict RowOf(const ui::ListView& list, const ui::ListItem& item) {
    py::dict row;
    row["tag"] = FromVariant(item.Tag());
    row["text"] = item.Text();
    row["icon"] = FromVariant(item.Icon());
    row["small_icon"] = FromVariant(item.SmallIcon());
    py::list subItems;
    for (int n = 1; n < list.ColumnHeaders().Count(); ++n) subItems.append(item.SubItems(n));
    row["sub_items"] = subItems;
    row["selected"] = item.Selected();
    return row;
}

}  // namespace

PYBIND11_MODULE(zelvo, m) {
    m.doc() =
        "The Zelvo address book. zelvo.create(name) makes an object of a public class; its members are\n"
        "reached by name, as attributes. Errors of the library raise zelvo.Error.";

    g_error = PyErr_NewExceptionWithDoc("zelvo.Error",
                                        "An error of the library: .number, .description and .source as the "
                                        "library raised them.",
                                        PyExc_Exception, nullptr);
    m.attr("Error") = py::handle(g_error);

    py::class_<DispatchObject, std::shared_ptr<DispatchObject>>(m, "Object",
                                                                 "An object of one of the library's public classes.")
        .def_property_readonly("class_name", [](const DispatchObject& o) { return o.Class().Name(); })
        .def("__getattr__", [](const py::object& self, const std::string& name) { return GetAttribute(self, name); })
        .def("__setattr__", [](const std::shared_ptr<DispatchObject>& o, const std::string& name,
                               const py::handle& value) { SetAttribute(o, name, value); })
        .def("__dir__",
             [](const DispatchObject& o) {
                 py::list names;
                 for (const DispMember& member : o.Class().Members()) names.append(member.name);
                 return names;
             })
        .def("__repr__", [](const DispatchObject& o) { return "<zelvo." + o.Class().Name() + " object>"; });

    m.def(
        "create",
        [](const std::string& className) {
            try {
                return CreateObject(className);
            } catch (const Error& e) {
                RaisePython(e, "create(\"" + className + "\")");
            }
        },
        py::arg("class_name"), "A new object of the public class of that name (error 429 when there is none).");
    m.def(
        "classes",
        [] {
            py::list names;
            for (const DispClass* cls : PublicClasses())
                if (cls->Creatable()) names.append(cls->Name());
            return names;
        },
        "The names of the public classes that create() makes.");

    py::class_<ui::ListView>(m, "ListView",
                             "A list control for the members that fill one: rows with a tag, a text, icons and "
                             "sub-items, one per column after the first.")
        .def(py::init([](const std::vector<std::string>& columns) {
                 auto list = std::make_unique<ui::ListView>();
                 list->SetView(ui::lvwReport);
                 for (const std::string& c : columns) list->ColumnHeaders().Add(c);
                 return list;
             }),
             py::arg("columns") = std::vector<std::string>{})
        .def("add_column", [](ui::ListView& l, const std::string& text) { l.ColumnHeaders().Add(text); },
             py::arg("text"))
        .def_property_readonly("columns",
                               [](const ui::ListView& l) {
                                   std::vector<std::string> texts;
                                   for (int i = 1; i <= l.ColumnHeaders().Count(); ++i)
                                       texts.push_back(l.ColumnHeaders().Item(i).Text);
                                   return texts;
                               })
        .def_property_readonly("rows",
                               [](const ui::ListView& l) {
                                   py::list rows;
                                   for (int i = 1; i <= l.ListItems().Count(); ++i)
                                       rows.append(RowOf(l, l.ListItems().Item(i)));
                                   return rows;
                               })
        .def("__len__", [](const ui::ListView& l) { return l.ListItems().Count(); })
        .def("clear", [](ui::ListView& l) { l.ListItems().Clear(); });

    py::class_<ui::DataControl>(m, "DataControl",
                                "A data control: a book, a record source, and the records it gives after "
                                "refresh().")
        .def(py::init<>())
        .def_readwrite("DatabaseName", &ui::DataControl::DatabaseName)
        .def_readwrite("Connect", &ui::DataControl::Connect)
        .def_readwrite("RecordSource", &ui::DataControl::RecordSource)
        .def("refresh",
             [](ui::DataControl& d) {
                 try {
                     d.Refresh();
                 } catch (const Error& e) {
                     RaisePython(e, "DataControl.refresh");
                 }
             })
        .def_property_readonly("records", [](ui::DataControl& d) {
            py::list records;
            for (const auto& record : d.Records()) {
                py::dict r;
                for (const auto& [name, value] : record) r[py::str(name)] = FromVariant(value);
                records.append(r);
            }
            return records;
        });
}

}  // namespace zelvo::python
