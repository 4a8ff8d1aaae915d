#include <fmt/format.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "hvxupgrade/Reader.h"
#include "native/Arguments.h"
#include "native/Bindings.h"
#include "native/HeldDocument.h"
#include "native/Lines.h"
#include "native/Progress.h"
#include "native/Results.h"
#include "native/Values.h"

namespace python {
namespace {

using hvxupgrade::FeatureId;
using hvxupgrade::FeatureLine;
using hvxupgrade::Link;

std::shared_ptr<HeldDocument> Read(const std::filesystem::path& file, py::object told,
                                   std::optional<std::uint64_t> maxUnpackedBytes) {
  Progress progress(std::move(told));
  hvxupgrade::ReadOptions options;
  options.maxUnpackedBytes = maxUnpackedBytes;
  options.onProgress = progress.Teller();
  return WithoutLock(progress,
                     [&] { return std::make_shared<HeldDocument>(hvxupgrade::Read(file, options)); });
}

py::object ReadHeader(const std::filesystem::path& file) {
  Progress silent{py::none()};
  return ToPython(WithoutLock(silent, [&] { return hvxupgrade::ReadHeader(file); }));
}

py::object IdOrNone(FeatureId id) {
  return id == Link::kNothing ? py::object(py::none()) : py::object(py::int_(id));
}

// The target may not have been read yet, so a link stays one.
py::object ValueOf(const hvxupgrade::Value& value) {
  return ToPython(value, [](FeatureId id) { return Result("Link")(id); });
}

py::object Get(const HeldLine& self, std::string_view key, const py::object& otherwise) {
  const hvxupgrade::Value* const value = self.feature.Find(key);
  return value == nullptr ? otherwise : ValueOf(*value);
}

py::object GetItem(const HeldLine& self, std::string_view key) {
  const hvxupgrade::Value* const value = self.feature.Find(key);
  if (value == nullptr) throw py::key_error(std::string(key));
  return ValueOf(*value);
}

std::int32_t Mode(const HeldLine& self, std::string_view key) {
  for (const FeatureLine::Attribute& each : self.feature.attributes) {
    if (each.key == key) return each.mode;
  }
  return 0;
}

template <class Convert>
py::list OfAttributes(const HeldLine& self, const Convert& convert) {
  py::list list;
  for (const FeatureLine::Attribute& each : self.feature.attributes) list.append(convert(each));
  return list;
}

py::list Keys(const HeldLine& self) {
  return OfAttributes(self, [](const FeatureLine::Attribute& each) { return py::str(each.key); });
}

void BindLine(py::module_& module) {
  py::class_<HeldLine> line(module, "FeatureLine",
                            R"(One line of a document file, read by itself.

          Attributes are read as those of a dict: line["Value"]. A link is a `Link`, father and container
          are ids.)");
  RefuseCopies(line, "a line", "pass what is needed of it, such as its id and dict(line.items())");
  line.def_property_readonly(
          "id", [](const HeldLine& self) { return self.feature.id; }, "The feature's id, from 1.")
      .def_property_readonly(
          "line", [](const HeldLine& self) { return self.number; },
          "The number of the line in the file; the header is line 1.")
      .def_property_readonly(
          "late_type", [](const HeldLine& self) { return std::string_view(self.feature.lateType); },
          "What the feature is, such as \"HVXPressure\".")
      .def_property_readonly(
          "name", [](const HeldLine& self) { return std::string_view(self.feature.name); },
          "The internal name; may be empty.")
      .def_property_readonly(
          "alias", [](const HeldLine& self) { return std::string_view(self.feature.alias); },
          "The name shown to the user; may be empty.")
      .def_property_readonly(
          "physical_type", [](const HeldLine& self) { return std::string_view(self.feature.physicalType); },
          "Such as \"THERMAL_STATIC_LINEAR\"; mostly empty.")
      .def_property_readonly(
          "up_to_date", [](const HeldLine& self) { return self.feature.isUpToDate; },
          "False for a feature that the workbench is to rebuild.")
      .def_property_readonly(
          "father", [](const HeldLine& self) { return IdOrNone(self.feature.father); },
          "The id of the feature beneath which it stands; None for a root.")
      .def_property_readonly(
          "container", [](const HeldLine& self) { return IdOrNone(self.feature.container); },
          "The id of the feature that is its container; None without one.")
      .def("mode", &Mode, py::arg("key"),
           R"(mode($self, key)
--

The mode that is kept beside the attribute; 0 without the attribute.)")
      .def("keys", &Keys, R"(keys($self)
--

The names of its attributes, in their order.)")
      .def(
          "values",
          [](const HeldLine& self) {
            return OfAttributes(self, [](const auto& each) { return ValueOf(each.value); });
          },
          R"(values($self)
--

The values of its attributes, in their order.)")
      .def(
          "items",
          [](const HeldLine& self) {
            return OfAttributes(
                self, [](const auto& each) { return py::make_tuple(each.key, ValueOf(each.value)); });
          },
          R"(items($self)
--

Pairs of name and value of its attributes, in their order.)")
      .def("get", &Get, py::arg("key"), py::arg("default") = py::none(),
           R"(get($self, key, default=None)
--

The value of the attribute, or `default` where the line has none.)")
      .def("__getitem__", &GetItem, py::arg("key"),
           "The value of the attribute. Raises KeyError where the line has none.")
      .def("__contains__",
           [](const HeldLine& self, const py::object& key) {
             return PyUnicode_Check(key.ptr()) != 0 && self.feature.Find(TextFrom(key, "key")) != nullptr;
           })
      .def("__iter__", [](const HeldLine& self) { return py::iter(Keys(self)); })
      .def("__repr__", [](const HeldLine& self) {
        const FeatureLine& read = self.feature;
        return RepresentationOf("FeatureLine", read.id, read.lateType, read.alias, read.name);
      });
}

void BindLines(py::module_& module) {
  py::class_<Lines> lines(
      module, "Lines",
      R"(The features of a document file, read line by line: an iterator of `FeatureLine`, and a context
          manager that closes the file. Its memory does not depend on the size of the document.)");
  RefuseCopies(lines, "the reader of lines", "pass the path, and read the lines there");
  lines
      .def_property_readonly(
          "header", [](const Lines& self) { return ToPython(self.GetHeader()); },
          "What the document tells in its first line.")
      .def("close", &Lines::Close, R"(close($self)
--

Lets go of the file; there are no more lines then.)")
      .def("__iter__", [](py::object self) { return self; })
      .def("__next__",
           [](Lines& self) {
             auto next = self.Next();
             if (!next) throw py::stop_iteration();
             return *std::move(next);
           })
      .def("__enter__", [](py::object self) { return self; })
      .def("__exit__", [](Lines& self, const py::args& /*raised*/) { self.Close(); })
      .def("__repr__",
           [](const Lines& self) { return fmt::format("<Lines of {}>", Quoted(self.File().string())); });
}

}  // namespace

void BindReading(py::module_& module) {
  BindLine(module);
  BindLines(module);
  // Python functions, which other processes can be handed too, are around them: hvxupgrade/files.py.
  module.def("read", &Read, py::arg("path"), py::arg("progress"), py::arg("max_unpacked_bytes"),
             "See hvxupgrade.read.");
  module.def("read_header", &ReadHeader, py::arg("path"), "See hvxupgrade.read_header.");
  module.def(
      "read_lines",
      [](const std::filesystem::path& file, py::object told, std::optional<std::uint64_t> maxUnpackedBytes) {
        return std::make_unique<Lines>(file, std::move(told), maxUnpackedBytes);
      },
      py::arg("path"), py::arg("progress"), py::arg("max_unpacked_bytes"), "See hvxupgrade.read_lines.");
}

}  // namespace python
