#include <fmt/format.h>
#include <pybind11/stl.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "native/Arguments.h"
#include "native/Bindings.h"
#include "native/HeldDocument.h"
#include "native/Values.h"

namespace python {
namespace {

using hvxupgrade::Feature;

py::object Beside(const HeldFeature& self, const std::optional<Feature>& other) {
  return other ? py::cast(self.Beside(*other)) : py::none();
}

py::object Get(HeldFeature& self, std::string_view key, const py::object& otherwise) {
  const auto value = self.Open().Get(key);
  return value ? ToPython(*value, self.document) : otherwise;
}

py::object GetItem(HeldFeature& self, std::string_view key) {
  const auto value = self.Open().Get(key);
  if (!value) throw py::key_error(std::string(key));
  return ToPython(*value, self.document);
}

void SetItem(HeldFeature& self, std::string_view key, const py::object& value) {
  self.Open().Set(key, ToValue(value, *self.document));
}

void DeleteItem(HeldFeature& self, std::string_view key) {
  if (!self.Open().Remove(key)) throw py::key_error(std::string(key));
}

py::list Keys(HeldFeature& self) {
  return py::cast(self.Open().Keys());
}

py::list Values(HeldFeature& self) {
  py::list values;
  for (const py::handle key : Keys(self)) values.append(GetItem(self, py::cast<std::string_view>(key)));
  return values;
}

py::list Items(HeldFeature& self) {
  py::list items;
  for (const py::handle key : Keys(self))
    items.append(py::make_tuple(key, GetItem(self, py::cast<std::string_view>(key))));
  return items;
}

// NumPy's flags count as well.
void SetUpToDate(HeldFeature& self, const py::object& given) {
  py::detail::make_caster<bool> flag;
  if (given.is_none() || !flag.load(given, true)) RaiseTypeError("up_to_date", "a bool", given);
  self.Open().SetUpToDate(flag);
}

py::list Sons(HeldFeature& self) {
  py::list sons;
  for (const Feature& each : self.Open().Sons()) sons.append(self.Beside(each));
  return sons;
}

py::object Equal(const HeldFeature& self, const py::object& other) {
  if (!py::isinstance<HeldFeature>(other)) return py::reinterpret_borrow<py::object>(Py_NotImplemented);
  return py::bool_(self.feature == py::cast<const HeldFeature&>(other).feature);
}

// Must not throw: a debugger or a log shows features in every state.
std::string Represent(HeldFeature& self) {
  const hvxupgrade::FeatureId id = self.feature.Id();
  if (self.document->IsWorkedOn())
    return fmt::format("<Feature {} of a document that is being worked on>", id);
  if (self.feature.IsRemoved()) return fmt::format("<Feature {}, removed>", id);
  return RepresentationOf("Feature", id, self.feature.LateType(), self.feature.Alias(), self.feature.Name());
}

}  // namespace

void BindFeature(py::module_& module) {
  py::class_<HeldFeature> feature(module, "Feature", R"(One stored object of a document.

          Attributes are read and changed as those of a dict: feature["Value"]. A feature keeps its document
          alive. Once it is removed, all but `id`, `removed`, `document` and comparison raise UsageError. Two
          are equal when they are one feature of one document.)");
  RefuseCopies(feature, "a feature", "pass its id, and find it in the document there");
  feature
      .def_property_readonly(
          "id", [](const HeldFeature& self) { return self.feature.Id(); },
          "The number that is the feature's own in its document, from 1.")
      .def_property_readonly(
          "removed", [](HeldFeature& self) { return self.Open().IsRemoved(); },
          "Whether the feature was removed from its document.")
      .def_property_readonly(
          "document", [](const HeldFeature& self) { return self.document; }, "The document that it is in.")
      .def_property_readonly(
          "late_type", [](HeldFeature& self) { return self.Open().LateType(); },
          "What the feature is, such as \"HVXPressure\".")
      .def_property_readonly(
          "name", [](HeldFeature& self) { return self.Open().Name(); }, "The internal name; may be empty.")
      .def_property(
          "alias", [](HeldFeature& self) { return self.Open().Alias(); },
          [](HeldFeature& self, const py::object& alias) { self.Open().SetAlias(TextFrom(alias, "alias")); },
          "The name shown to the user; may be empty. Can be set.")
      .def_property_readonly(
          "physical_type", [](HeldFeature& self) { return self.Open().PhysicalType(); },
          "Such as \"THERMAL_STATIC_LINEAR\"; mostly empty.")
      .def_property(
          "up_to_date", [](HeldFeature& self) { return self.Open().IsUpToDate(); }, &SetUpToDate,
          "False for a feature that the workbench is to rebuild. Can be set.")
      .def_property_readonly(
          "father", [](HeldFeature& self) { return Beside(self, self.Open().Father()); },
          "The feature beneath which it stands; None for a root.")
      .def_property_readonly(
          "container", [](HeldFeature& self) { return Beside(self, self.Open().Container()); },
          "The feature that is its container; None without one.")
      .def_property_readonly("sons", &Sons, "The features directly beneath it, in order.")
      .def(
          "mode", [](HeldFeature& self, std::string_view key) { return self.Open().Mode(key); },
          py::arg("key"), R"(mode($self, key)
--

The mode that is kept beside the attribute; 0 without the attribute.)")
      .def("keys", &Keys, R"(keys($self)
--

The names of its attributes, in their order.)")
      .def("values", &Values, R"(values($self)
--

The values of its attributes, in their order.)")
      .def("items", &Items, R"(items($self)
--

Pairs of name and value of its attributes, in their order.)")
      .def("get", &Get, py::arg("key"), py::arg("default") = py::none(),
           R"(get($self, key, default=None)
--

The value of the attribute, or `default` where the feature lacks it.)")
      .def("__getitem__", &GetItem, py::arg("key"),
           R"(The value of the attribute: bool, int, float, str, list, a feature for a link, None for a link
          that holds nothing. Raises KeyError where the feature lacks it.)")
      .def("__setitem__", &SetItem, py::arg("key"), py::arg("value"),
           R"(Sets the attribute; a new one comes last. An int is stored as an integer and a float as a real,
          which are different kinds.)")
      .def("__delitem__", &DeleteItem, py::arg("key"),
           "Takes the attribute away. Raises KeyError where the feature lacks it.")
      .def("__contains__",
           [](HeldFeature& self, const py::object& key) {
             return PyUnicode_Check(key.ptr()) != 0 && self.Open().Has(TextFrom(key, "key"));
           })
      .def("__iter__", [](HeldFeature& self) { return py::iter(Keys(self)); })
      .def("__eq__", &Equal)
      .def("__hash__", [](const HeldFeature& self) { return self.feature.Id(); })
      .def("__repr__", &Represent);
}

}  // namespace python
