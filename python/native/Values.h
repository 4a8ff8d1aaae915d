#pragma once

#include <pybind11/pybind11.h>

#include <functional>
#include <memory>
#include <string>

#include "hvxupgrade/Value.h"
#include "native/HeldDocument.h"

namespace python {

namespace py = pybind11;

/// The text of a str. Raises TypeError for anything else, and UnicodeEncodeError for half a pair of
/// surrogates.
[[nodiscard]] std::string TextOf(pybind11::handle object);

/// The Python object of a value. `linked` makes that of a link that holds something; one that holds nothing
/// is None.
[[nodiscard]] py::object ToPython(const hvxupgrade::Value& value,
                                  const std::function<py::object(hvxupgrade::FeatureId)>& linked);
/// Links become features; a link whose target is gone, None.
[[nodiscard]] py::object ToPython(const hvxupgrade::Value& value,
                                  const std::shared_ptr<HeldDocument>& document);

/// The value of a Python object: bool, int, float, str, None, a list or tuple of such, a feature of this
/// document, or a `Link`. Raises TypeError for all others and OverflowError for integers beyond 64 bits;
/// throws `hvxupgrade::Error` (`kUsage`) for a feature of another document.
[[nodiscard]] hvxupgrade::Value ToValue(py::handle object, const HeldDocument& document);

}  // namespace python
