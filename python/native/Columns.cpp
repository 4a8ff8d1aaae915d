#include "native/Columns.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <cstdint>
#include <memory>
#include <type_traits>

#include "hvxupgrade/Columns.h"
#include "native/Progress.h"
#include "native/Results.h"

namespace python {
namespace {

using hvxupgrade::Columns;

template <class Number>
py::array_t<Number> ArrayOn(const std::vector<Number>& numbers, const py::capsule& owner) {
  return py::array_t<Number>(static_cast<py::ssize_t>(numbers.size()), numbers.data(), owner);
}

// NumPy has no enumerations; hvxupgrade.Kind has the same numbers.
py::array_t<std::uint8_t> ArrayOn(const std::vector<Columns::Column::Cell>& cells, const py::capsule& owner) {
  static_assert(std::is_same_v<std::underlying_type_t<Columns::Column::Cell>, std::uint8_t>);
  const auto* const numbers = reinterpret_cast<const std::uint8_t*>(cells.data());
  return py::array_t<std::uint8_t>(static_cast<py::ssize_t>(cells.size()), numbers, owner);
}

// The arrays are NumPy's, which need not be there for anything else.
void RequireNumPy() {
  try {
    py::module_::import("numpy");
  } catch (py::error_already_set& error) {
    if (!error.matches(PyExc_ModuleNotFoundError)) throw;
    py::raise_from(error, PyExc_ModuleNotFoundError,
                   "columns are arrays of NumPy, which is not installed: install it with apt-get install "
                   "python3-numpy");
    throw py::error_already_set();
  }
}

}  // namespace

py::object ColumnsOf(HeldDocument& document, const std::vector<std::string>& keys) {
  RequireNumPy();
  auto made = [&] {
    const HeldDocument::Work work(document);
    Progress silent{py::none()};
    return WithoutLock(silent, [&] { return std::make_unique<Columns>(Columns::Of(work.document, keys)); });
  }();
  const Columns& columns = *made;
  const py::capsule owner(made.get(), [](void* owned) { delete static_cast<Columns*>(owned); });
  made.release();  // NOLINT(bugprone-unused-return-value): the capsule has it

  py::dict values;
  py::dict kinds;
  for (const Columns::Column& each : columns.attributes) {
    const py::str key(each.key);
    values[key] = ArrayOn(each.numbers, owner);
    kinds[key] = ArrayOn(each.cells, owner);
  }
  return Result("Columns")(ArrayOn(columns.ids, owner), ArrayOn(columns.fathers, owner),
                           ArrayOn(columns.lateTypes, owner), py::tuple(py::cast(columns.lateTypeNames)),
                           values, kinds);
}

}  // namespace python
