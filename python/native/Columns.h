#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

#include "native/HeldDocument.h"

namespace python {

/// The features of the document as NumPy arrays, whose memory is that of the columns.
[[nodiscard]] pybind11::object ColumnsOf(HeldDocument& document, const std::vector<std::string>& keys);

}  // namespace python
