#include <fmt/format.h>
#include <pybind11/stl.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hvxupgrade/Error.h"
#include "hvxupgrade/Writer.h"
#include "native/Arguments.h"
#include "native/Bindings.h"
#include "native/Columns.h"
#include "native/Criteria.h"
#include "native/FeatureIterator.h"
#include "native/Progress.h"
#include "native/Results.h"
#include "native/Values.h"

namespace python {
namespace {

using hvxupgrade::Document;
using hvxupgrade::Error;
using hvxupgrade::Feature;
using hvxupgrade::FeatureId;
using Held = std::shared_ptr<HeldDocument>;

std::optional<Feature> Find(const Held& self, const py::object& sought) {
  const std::optional<FeatureId> id = IdFrom(sought);
  return id ? self->Open().Find(*id) : std::nullopt;
}

py::object Get(const Held& self, const py::object& id, const py::object& otherwise) {
  const std::optional<Feature> found = Find(self, id);
  return found ? py::cast(HeldFeature{self, *found}) : otherwise;
}

HeldFeature GetItem(const Held& self, const py::object& id) {
  const std::optional<Feature> found = Find(self, id);
  if (!found) RaiseKeyError(id);
  return {self, *found};
}

bool Contains(const Held& self, const py::object& sought) {
  self->RequireOpen();
  if (py::isinstance<HeldFeature>(sought)) {
    const auto& feature = py::cast<const HeldFeature&>(sought);
    return feature.document == self && !feature.feature.IsRemoved();
  }
  return PyIndex_Check(sought.ptr()) != 0 && Find(self, sought).has_value();
}

py::list OfType(const Held& self, std::string_view lateType) {
  py::list features;
  for (const Feature& each : self->Open().OfType(lateType)) features.append(HeldFeature{self, each});
  return features;
}

FeatureIterator Where(const Held& self, const py::function& condition) {
  self->RequireOpen();
  return FeatureIterator(self, [condition](const HeldFeature& feature) {
    return py::bool_(condition(feature)).ptr() == Py_True;
  });
}

void AddAttributes(Criteria& criteria, const py::dict& attributes, const HeldDocument& document) {
  for (const auto& [key, value] : attributes)
    criteria.AddAttribute(TextFrom(key, "the name of an attribute"), ToValue(value, document));
}

FeatureIterator FindAll(const Held& self, std::optional<std::string> lateType,
                        std::optional<HeldFeature> father, std::optional<std::string> name,
                        std::optional<std::string> alias, const py::object& attributes,
                        const py::kwargs& more) {
  self->RequireOpen();
  Criteria criteria;
  criteria.lateType = std::move(lateType);
  criteria.father = std::move(father);
  criteria.name = std::move(name);
  criteria.alias = std::move(alias);
  if (!attributes.is_none()) {
    if (PyMapping_Check(attributes.ptr()) == 0 || !py::hasattr(attributes, "keys"))
      RaiseTypeError("attributes", "a dict", attributes);
    AddAttributes(criteria, py::dict(attributes), *self);
  }
  AddAttributes(criteria, more, *self);
  return FeatureIterator(self, [criteria = std::move(criteria)](const HeldFeature& feature) {
    return criteria.Fits(feature.feature);
  });
}

// Handles do not say which document they are of.
void RequireOfThis(const Held& self, const HeldFeature& feature) {
  if (feature.document != self)
    throw Error(Error::Kind::kUsage, "", 0, "the feature belongs to another document",
                "Use a feature of the same document");
}

HeldFeature Create(const Held& self, std::string_view lateType, std::string_view alias,
                   const std::optional<HeldFeature>& father) {
  if (father) RequireOfThis(self, *father);
  return {self, self->Open().Create(lateType, alias, father ? std::optional(father->feature) : std::nullopt)};
}

void Remove(const Held& self, const HeldFeature& feature) {
  RequireOfThis(self, feature);
  self->Open().Remove(feature.feature);
}

py::list Check(const Held& self) {
  const HeldDocument::Work work(*self);
  Progress silent{py::none()};
  return ToPython(WithoutLock(silent, [&] { return hvxupgrade::Check(work.document); }));
}

py::object Changes(const Held& self) {
  const HeldDocument::Work work(*self);
  Progress silent{py::none()};
  return ToPython(WithoutLock(silent, [&] { return hvxupgrade::ChangesSinceRead(work.document); }));
}

py::object Compare(const Held& before, const Held& after) {
  const HeldDocument::Work first(*before);
  std::optional<HeldDocument::Work> second;
  if (after != before) second.emplace(*after);
  Document& other = second ? second->document : first.document;
  Progress silent{py::none()};
  return ToPython(WithoutLock(silent, [&] { return hvxupgrade::Compare(first.document, other); }));
}

std::optional<hvxupgrade::Compression> CompressionFrom(const py::object& given) {
  static const std::map<std::string_view, hvxupgrade::Compression> kNames = {
      {"none", hvxupgrade::Compression::kNone},
      {"gzip", hvxupgrade::Compression::kGzip},
      {"zstd", hvxupgrade::Compression::kZstd}};
  if (given.is_none()) return std::nullopt;
  const std::string name = TextFrom(given, "compression");
  const auto found = kNames.find(name);
  if (found == kNames.end())
    throw py::value_error(
        fmt::format("compression is \"none\", \"gzip\", \"zstd\" or None, not \"{}\"", name));
  return found->second;
}

void Write(const Held& self, const py::object& path, const py::object& overwrite,
           const py::object& backupSuffix, const py::object& compression, py::object told) {
  const std::filesystem::path file = PathFrom(path, "path");
  Progress progress(std::move(told));
  hvxupgrade::WriteOptions options;
  options.overwrite = FlagFrom(overwrite, "overwrite");
  options.backupSuffix = TextFrom(backupSuffix, "backup_suffix");
  options.compression = CompressionFrom(compression);
  options.onProgress = progress.Teller();
  const HeldDocument::Work work(*self);
  WithoutLock(progress, [&] { hvxupgrade::Write(work.document, file, options); });
}

// Must not throw: a debugger or a log shows documents in every state.
std::string Represent(const Held& self) {
  if (self->IsWorkedOn()) return "<Document that is being worked on>";
  const Document& document = self->Open();
  return fmt::format("<Document {} of {} features>", Quoted(document.DisplayName()), document.FeatureCount());
}

void BindIterator(py::module_& module) {
  py::class_<FeatureIterator> iterator(module, "FeatureIterator",
                                       "Walks over features of a document, in document order.");
  RefuseCopies(iterator, "an iterator over features", "make another one");
  iterator.def("__iter__", [](py::object self) { return self; }).def("__next__", [](FeatureIterator& self) {
    auto next = self.Next();
    if (!next) throw py::stop_iteration();
    return *std::move(next);
  });
}

}  // namespace

void BindDocument(py::module_& module) {
  BindIterator(module);
  py::class_<HeldDocument, Held> document(module, "Document",
                                          R"(An analysis document in memory.

          Iteration goes over all features, in document order: what is created meanwhile is met, too, and
          the feature at hand may be removed. While a call reads, upgrades, checks or writes the document,
          other threads and its callback cannot use it: UsageError.)");
  document
      .def(py::init([](std::string_view name) { return std::make_shared<HeldDocument>(Document(name)); }),
           py::arg("display_name") = "", R"(__init__($self, display_name='')
--

An empty document.)")
      .def_property_readonly(
          "display_name", [](const Held& self) { return Decoded(self->Open().DisplayName()); },
          "The name of the file without its folder, for a document that was read.")
      .def_property_readonly(
          "file",
          [](const Held& self) {
            const std::string file = self->Open().File().string();
            return file.empty() ? py::object(py::none()) : py::object(Decoded(file));
          },
          R"(The path that it was read from; for a document that was made here, the one that it was written to
          last. None when there is none.)")
      .def_property_readonly(
          "upgrades", [](const Held& self) { return self->Open().Upgrades(); },
          R"(The identifiers of the upgrades that it has been through, in the order in which they were
          recorded.)")
      .def("__len__", [](const Held& self) { return self->Open().FeatureCount(); })
      .def("__iter__",
           [](const Held& self) {
             self->RequireOpen();
             return FeatureIterator(self);
           })
      .def("__contains__", &Contains, py::arg("feature"),
           "Whether that feature, or one of that id, is in the document.")
      .def("__getitem__", &GetItem, py::arg("id"),
           "The feature of that id. Raises KeyError where there is none.")
      .def("get", &Get, py::arg("id"), py::arg("default") = py::none(),
           R"(get($self, id, default=None)
--

The feature of that id, or `default` where there is none.)")
      .def("of_type", &OfType, py::arg("late_type"), R"(of_type($self, late_type)
--

The features of that late type, in document order.)")
      .def("where", &Where, py::arg("condition"), R"(where($self, condition)
--

Those features for which `condition(feature)` is true.)")
      .def("find_all", &FindAll, py::arg("late_type") = py::none(), py::kw_only(),
           py::arg("father") = py::none(), py::arg("name") = py::none(), py::arg("alias") = py::none(),
           py::arg("attributes") = py::none(),
           R"(find_all($self, late_type=None, *, father=None, name=None, alias=None, attributes=None, **more)
--

The features that are all of what is given: of that late type, directly beneath that father, of
          that name and alias, with these values of attributes. Further keywords are attributes:
          find_all("Parameter", Magnitude="PRESSURE"). Names that are no keywords, or mean something else
          here, go into `attributes`, a dict. Numbers are compared as numbers: 100 finds 100.0.)")
      .def("create", &Create, py::arg("late_type"), py::arg("alias") = "", py::arg("father") = py::none(),
           R"(create($self, late_type, alias='', father=None)
--

Makes a feature, the last of the document and of its father's sons, in its father's container,
          with its late type and id as name.)")
      .def("remove", &Remove, py::arg("feature"),
           R"(remove($self, feature)
--

Removes the feature with all that stands beneath it, and every link that held any of them.)")
      .def(
          "columns",
          [](const Held& self, const py::args& keys) {
            std::vector<std::string> texts;
            for (const py::handle key : keys) texts.push_back(TextFrom(key, "the name of an attribute"));
            return ColumnsOf(*self, texts);
          },
          R"(columns($self, *keys)
--

Ids, fathers, late types and the attributes of these names as NumPy arrays, a row per feature.)")
      .def("check", &Check,
           R"(check($self)
--

All in the document that does not conform to the current data model, in document order; then the
          late types that nobody knows.)")
      .def("changes", &Changes, R"(changes($self)
--

What became of the document since it was read, or made.)")
      .def("write", &Write, py::arg("path"), py::kw_only(), py::arg("overwrite") = false,
           py::arg("backup_suffix") = "", py::arg("compression") = py::none(),
           py::arg("progress") = py::none(),
           R"(write($self, path, *, overwrite=False, backup_suffix='', compression=None, progress=None)
--

Writes the document, whole or not at all.

          `overwrite` lets a file that stands there be replaced; `backup_suffix` keeps what is replaced
          under its name with that suffix. `compression` is "none", "gzip" or "zstd"; without it a file that
          is replaced stays as it is stored, and the name of a new one decides. `progress(written, total)`
          is told features; if it returns False or raises, nothing is written. Raises WriteError, and
          ChangedError where another program changed the file since the document was read from it or written
          to it.)")
      .def("__repr__", &Represent);
  RefuseCopies(document, "a document", "write it, and read the file there");
  module.def("compare", &Compare, py::arg("before"), py::arg("after"), R"(compare(before, after)
--

What two documents differ in.)");
}

}  // namespace python
