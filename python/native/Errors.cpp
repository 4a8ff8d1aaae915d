#include "native/Errors.h"

#include <pybind11/pybind11.h>

#include <exception>

#include "hvxupgrade/Error.h"
#include "native/Values.h"

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

void Raise(const Error& error) {
  const py::object type = py::module_::import("hvxupgrade.errors").attr(ClassFor(error.GetKind()));
  const py::object none = py::none();
  const py::object raised = type(Decoded(error.what()), "problem"_a = Decoded(error.Problem()),
                                 "file"_a = error.File().empty() ? none : py::object(Decoded(error.File())),
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
