#include "native/Arguments.h"

#include <fmt/format.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace python {
namespace {

// Never given back: when the interpreter ends, nobody knows whether it may still be.
py::handle argumentsModule;

}  // namespace

void LoadArguments() {
  argumentsModule = py::module_::import("hvxupgrade.arguments").release();
}

std::vector<std::string> TextsFrom(py::handle given, const char* name) {
  std::vector<std::string> texts;
  for (const py::handle each : py::tuple(argumentsModule.attr("texts")(given, name)))
    texts.push_back(TextFrom(each, name));
  return texts;
}

std::filesystem::path PathFrom(py::handle given, const char* name) {
  return py::cast<std::filesystem::path>(argumentsModule.attr("path")(given, name));
}

std::vector<std::filesystem::path> PathsFrom(py::handle given, const char* name) {
  return py::cast<std::vector<std::filesystem::path>>(argumentsModule.attr("paths")(given, name));
}

bool FlagFrom(py::handle given, const char* name) {
  return py::cast<bool>(argumentsModule.attr("flag")(given, name));
}

bool IsStop(py::handle answer) {
  if (answer.is_none() || answer.ptr() == Py_True) return false;
  return py::cast<bool>(argumentsModule.attr("is_stop")(answer));
}

std::optional<std::uint64_t> CountFrom(py::handle given, const char* name) {
  return py::cast<std::optional<std::uint64_t>>(argumentsModule.attr("count")(given, name));
}

std::string TextFrom(py::handle given, const char* what) {
  if (PyUnicode_Check(given.ptr()) == 0) RaiseTypeError(what, "a str", given);
  Py_ssize_t size = 0;
  const char* const text = PyUnicode_AsUTF8AndSize(given.ptr(), &size);
  if (text == nullptr) throw py::error_already_set();
  return {text, static_cast<std::size_t>(size)};
}

std::optional<hvxupgrade::FeatureId> IdFrom(py::handle given) {
  if (PyIndex_Check(given.ptr()) == 0) RaiseTypeError("the id of a feature", "an int", given);
  const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(given.ptr()));
  if (!number) throw py::error_already_set();
  int overflow = 0;
  const long long id = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
  return overflow != 0 ? std::nullopt : std::optional<hvxupgrade::FeatureId>(id);
}

void RaiseTypeError(const char* what, const char* wanted, py::handle given) {
  throw py::type_error(fmt::format("{} is {}, not {}", what, wanted, Py_TYPE(given.ptr())->tp_name));
}

void RaiseKeyError(py::handle key) {
  PyErr_SetObject(PyExc_KeyError, key.ptr());
  throw py::error_already_set();
}

}  // namespace python
