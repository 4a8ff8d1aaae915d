#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "hvxupgrade/Value.h"

namespace python {

namespace py = pybind11;

// What Python gives as arguments, taken as Python people mean it: hvxupgrade/arguments.py. Each raises
// TypeError or ValueError, which tells `name`.

/// To be called once, when the module is loaded.
void LoadArguments();

[[nodiscard]] std::vector<std::string> TextsFrom(py::handle given, const char* name);
[[nodiscard]] std::filesystem::path PathFrom(py::handle given, const char* name);
[[nodiscard]] std::vector<std::filesystem::path> PathsFrom(py::handle given, const char* name);
[[nodiscard]] bool FlagFrom(py::handle given, const char* name);
/// Whether a callback said that the work is to stop: False, also numpy's. Raises nothing for any answer.
[[nodiscard]] bool IsStop(py::handle answer);
/// None for None.
[[nodiscard]] std::optional<std::uint64_t> CountFrom(py::handle given, const char* name);

/// The text of a str, which is `what`. Raises TypeError for anything else, and UnicodeEncodeError for half a
/// pair of surrogates.
[[nodiscard]] std::string TextFrom(py::handle given, const char* what);
/// An id, which may be no feature's; none for a number that no feature can have. Raises TypeError for what is
/// no integer.
[[nodiscard]] std::optional<hvxupgrade::FeatureId> IdFrom(py::handle given);

[[noreturn]] void RaiseTypeError(const char* what, const char* wanted, py::handle given);
[[noreturn]] void RaiseKeyError(py::handle key);

}  // namespace python
