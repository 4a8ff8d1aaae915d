#pragma once

#include <pybind11/pybind11.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "hvxupgrade/Value.h"
#include "native/HeldDocument.h"

namespace python {

namespace py = pybind11;

/// The str of a path or of what quotes one, as os.fsdecode makes it of bytes that are no UTF-8.
[[nodiscard]] py::str Decoded(const std::string& text);
/// The text as Python writes it in its sources.
[[nodiscard]] std::string Quoted(std::string_view text);

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
