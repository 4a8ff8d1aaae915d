#include "native/Errors.h"

#include <pybind11/pybind11.h>

#include <exception>

#include "hvxupgrade/Error.h"

namespace python {
namespace {

namespace py = pybind11;
using hvxupgrade::Error;
using py::literals::operator""_a;

const char* ClassFor(Error::Kind kind) {
  switch (kind) {
    case Error::Kind::kUnreadable:
      return "UnreadableError";
    case Error::Kind::kInvalid:
      return "InvalidDocumentError";
    case Error::Kind::kNewer:
      return "NewerDocumentError";
    case Error::Kind::kUnwritable:
      return "WriteError";
    case Error::Kind::kChanged:
      return "ChangedError";
    case Error::Kind::kInstallation:
      return "InstallationError";
    case Error::Kind::kUsage:
      return "UsageError";
    case Error::Kind::kStopped:
      return "StoppedError";
  }
  return "Error";
}

// Paths may hold bytes that are no UTF-8, and messages quote them: as os.fsdecode would have them.
py::object Decoded(const std::string& text) {
  PyObject* const decoded =
      PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
  if (decoded == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(decoded);
}

void Raise(const Error& error) {
  const py::object type = py::module_::import("hvxupgrade.errors").attr(ClassFor(error.GetKind()));
  const py::object none = py::none();
  const py::object raised = type(Decoded(error.what()), "problem"_a = Decoded(error.Problem()),
                                 "file"_a = error.File().empty() ? none : Decoded(error.File()),
                                 "line"_a = error.Line() == 0 ? none : py::object(py::int_(error.Line())),
                                 "advice"_a = Decoded(error.Advice()));
  PyErr_SetObject(type.ptr(), raised.ptr());
}

}  // namespace

void TranslateErrors() {
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      std::rethrow_exception(std::move(thrown));
    } catch (const Error& error) {
      Raise(error);
    }
  });
}

}  // namespace python
