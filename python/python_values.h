// Values between Python and the library's late binding.
#pragma once

#include <pybind11/pybind11.h>

#include <string>

#include "zelvo/dispatch.h"

namespace zelvo::python {

namespace py = pybind11;

// A Python value as a Variant: None is Null, bool a Boolean, int a whole
// number, float a Double, str a text, bytes bytes. Anything else is a
// TypeError that says which argument of which member it was (`where`).
Variant ToVariant(const py::handle& value, const std::string& where);

// A Variant as the Python value above.
py::object FromVariant(const Variant& value);

// A Python argument for parameter `param`: for an Object parameter a
// zelvo.Object, ListView, DataControl or None (Nothing); else a value.
DispArg ToArg(const py::handle& value, const DispParam& param, const std::string& where);

// What a member gave: its object as a zelvo.Object, or its value.
py::object FromResult(const DispResult& result);

}  // namespace zelvo::python
