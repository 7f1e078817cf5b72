#include "python_values.h"

#include <limits>

#include "zelvo/error.h"

namespace zelvo::python {

namespace {

std::string TypeName(const py::handle& value) { return py::str(py::type::handle_of(value).attr("__name__")); }

}  // namespace

Variant ToVariant(const py::handle& value, const std::string& where) {
    if (value.is_none()) return Variant();
    // bool before int: a Python bool is an int too.
    if (py::isinstance<py::bool_>(value)) return Variant(value.cast<bool>());
    if (py::isinstance<py::int_>(value)) {
        // A number beyond 64 bits is too large for any parameter; the
        // runtime's overflow, as for a Long that does not fit.
        int overflow = 0;
        long long v = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
        if (overflow) throw Error(6, "Overflow", "Zelvolib");
        return Variant(static_cast<std::int64_t>(v));
    }
    if (py::isinstance<py::float_>(value)) return Variant(value.cast<double>());
    if (py::isinstance<py::str>(value)) return Variant(value.cast<std::string>());
    if (py::isinstance<py::bytes>(value)) {
        std::string raw = value.cast<std::string>();
        return Variant(Bytes(raw.begin(), raw.end()));
    }
    throw py::type_error(where + " must be None, bool, int, float, str or bytes, not " + TypeName(value));
}

py::object FromVariant(const Variant& value) {
    switch (value.kind()) {
        case Variant::Kind::Null: return py::none();
        case Variant::Kind::Integer: return py::int_(value.integer());
        case Variant::Kind::Double: return py::float_(value.real());
        case Variant::Kind::Boolean: return py::bool_(value.boolean());
        case Variant::Kind::Text: return py::str(value.text());
        case Variant::Kind::Bytes: {
            const Bytes& b = value.bytes();
            return py::bytes(reinterpret_cast<const char*>(b.data()), b.size());
        }
    }
    return py::none();
}

DispArg ToArg(const py::handle& value, const DispParam& param, const std::string& where) {
    if (param.type != DispType::Object) return DispArg(ToVariant(value, where));
    if (value.is_none()) return DispArg(nullptr);
    if (py::isinstance<DispatchObject>(value)) return DispArg(value.cast<std::shared_ptr<DispatchObject>>());
    if (py::isinstance<ui::ListView>(value)) return DispArg(value.cast<ui::ListView*>());
    if (py::isinstance<ui::DataControl>(value)) return DispArg(value.cast<ui::DataControl*>());
    throw py::type_error(where + " must be a zelvo object, a ListView, a DataControl or None, not " +
                         TypeName(value));
}

py::object FromResult(const DispResult& result) {
    if (auto object = result.Object()) return py::cast(object);
    return FromVariant(result.ValueOrNull());
}

}  // namespace zelvo::python
