#include "native/Values.h"

#include <string>

#include "hvxupgrade/Error.h"
#include "native/Arguments.h"
#include "native/Results.h"

namespace python {

using hvxupgrade::Error;
using hvxupgrade::Link;
using hvxupgrade::List;
using hvxupgrade::Value;

namespace {

[[noreturn]] void Raise(PyObject* type, const std::string& message) {
  PyErr_SetString(type, message.c_str());
  throw py::error_already_set();
}

std::int64_t IntegerOf(py::handle object) {
  int overflow = 0;
  const long long number = PyLong_AsLongLongAndOverflow(object.ptr(), &overflow);
  if (overflow != 0) Raise(PyExc_OverflowError, "a document keeps integers of 64 bits");
  if (number == -1 && PyErr_Occurred() != nullptr) throw py::error_already_set();
  return number;
}

Link LinkTo(const HeldFeature& target, const HeldDocument& document) {
  if (target.document.get() != &document)
    throw Error(Error::Kind::kUsage, "", 0, "a link to a feature of another document",
                "Link to a feature of the same document");
  return {target.feature.Id()};
}

List ListOf(py::handle entries, const HeldDocument& document, int depth) {
  // Deeper ones are refused by the document; a list that holds itself must not get as far.
  constexpr int kDeepest = 64;
  if (depth > kDeepest) Raise(PyExc_ValueError, "lists are too deep");
  List list;
  list.reserve(py::len(entries));
  for (const py::handle each : py::reinterpret_borrow<py::sequence>(entries)) {
    const bool isList = PyList_Check(each.ptr()) != 0 || PyTuple_Check(each.ptr()) != 0;
    list.push_back(isList ? Value(ListOf(each, document, depth + 1)) : ToValue(each, document));
  }
  return list;
}

}  // namespace

py::str Decoded(const std::string& text) {
  PyObject* const decoded =
      PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
  if (decoded == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(decoded);
}

std::string Quoted(std::string_view text) {
  return py::cast<std::string>(py::repr(Decoded(std::string(text))));
}

py::object ToPython(const Value& value, const std::function<py::object(hvxupgrade::FeatureId)>& linked) {
  switch (value.GetKind()) {
    case Value::Kind::kString:
      return py::str(value.AsString());
    case Value::Kind::kInteger:
      return py::int_(value.AsInteger());
    case Value::Kind::kReal:
      return py::float_(value.AsReal());
    case Value::Kind::kBoolean:
      return py::bool_(value.AsBoolean());
    case Value::Kind::kLink:
      return value.AsLink().target == Link::kNothing ? py::object(py::none()) : linked(value.AsLink().target);
    case Value::Kind::kList:
      break;
  }
  const List& entries = value.AsList();
  py::list list(entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) list[i] = ToPython(entries[i], linked);
  return list;
}

py::object ToPython(const Value& value, const std::shared_ptr<HeldDocument>& document) {
  return ToPython(value, [&document](hvxupgrade::FeatureId id) -> py::object {
    const auto target = document->Open().Find(id);
    return target ? py::cast(HeldFeature{document, *target}) : py::none();
  });
}

Value ToValue(py::handle object, const HeldDocument& document) {
  PyObject* const given = object.ptr();
  if (given == Py_None) return Link{};
  if (PyBool_Check(given) != 0) return given == Py_True;
  if (PyFloat_Check(given) != 0) return PyFloat_AS_DOUBLE(given);
  if (PyUnicode_Check(given) != 0) return TextFrom(object, "a text");
  if (PyList_Check(given) != 0 || PyTuple_Check(given) != 0) return ListOf(object, document, 1);
  // NumPy's flag would count as an index.
  if (std::string_view(Py_TYPE(given)->tp_name).starts_with("numpy.bool")) return PyObject_IsTrue(given) == 1;
  if (PyIndex_Check(given) != 0) return IntegerOf(object);
  if (py::isinstance<HeldFeature>(object)) return LinkTo(py::cast<HeldFeature&>(object), document);
  if (py::isinstance(object, Result("Link"))) return Link{IntegerOf(object.attr("id"))};
  Raise(PyExc_TypeError,
        "an attribute holds bool, int, float, str, None, a feature, or a list of these, not " +
            std::string(Py_TYPE(given)->tp_name));
}

}  // namespace python
