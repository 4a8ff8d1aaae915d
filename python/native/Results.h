#pragma once

#include <pybind11/pybind11.h>

#include <vector>

#include "hvxupgrade/Difference.h"
#include "hvxupgrade/Findings.h"
#include "hvxupgrade/Reader.h"
#include "hvxupgrade/Upgrade.h"

namespace python {

namespace py = pybind11;

// What calls give is data without a tie to a document: plain Python classes (hvxupgrade/results.py), which
// can be compared, printed and passed to another process.

/// To be called once, when the module is loaded.
void LoadResults();
/// A class of hvxupgrade.results.
[[nodiscard]] py::object Result(const char* name);

[[nodiscard]] py::object ToPython(const hvxupgrade::Header& header);
[[nodiscard]] py::object ToPython(const hvxupgrade::KnownUpgrade& upgrade);
[[nodiscard]] py::object ToPython(const hvxupgrade::UpgradeResult& result);
[[nodiscard]] py::object ToPython(const hvxupgrade::Difference& difference);
[[nodiscard]] py::list ToPython(const std::vector<hvxupgrade::Finding>& findings);

}  // namespace python
