#pragma once

#include <pybind11/pybind11.h>

namespace python {

/// Each adds its classes and functions to the module.
void BindDocument(pybind11::module_& module);
void BindFeature(pybind11::module_& module);
void BindReading(pybind11::module_& module);
void BindUpgrader(pybind11::module_& module);

}  // namespace python
