#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <string_view>

#include "hvxupgrade/Value.h"

namespace python {

/// Has instances refuse to be copied and pickled: `what` cannot be, and `instead` is what to do.
void RefuseCopies(const pybind11::object& type, std::string_view what, std::string_view instead);

/// What is shown of a feature: its id and late type, and the alias or, where that is empty, the name.
[[nodiscard]] std::string RepresentationOf(std::string_view what, hvxupgrade::FeatureId id,
                                           std::string_view lateType, std::string_view alias,
                                           std::string_view name);

/// Each adds its classes and functions to the module.
void BindDocument(pybind11::module_& module);
void BindFeature(pybind11::module_& module);
void BindReading(pybind11::module_& module);
void BindUpgrader(pybind11::module_& module);

}  // namespace python
