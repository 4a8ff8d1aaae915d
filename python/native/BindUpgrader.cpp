#include <fmt/format.h>
#include <pybind11/stl.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hvxupgrade/Upgrade.h"
#include "native/Arguments.h"
#include "native/Bindings.h"
#include "native/HeldDocument.h"
#include "native/Progress.h"
#include "native/Results.h"

namespace python {
namespace {

using hvxupgrade::Upgrader;
using Held = std::shared_ptr<HeldDocument>;

std::shared_ptr<Upgrader> Make(const py::object& libraries, const py::object& useInstalled,
                               const py::object& data, const py::object& language) {
  hvxupgrade::UpgraderOptions options;
  options.useInstalledLibrary = FlagFrom(useInstalled, "use_installed");
  options.libraries = PathsFrom(libraries, "libraries");
  if (!data.is_none()) options.data = PathFrom(data, "data");
  options.language = TextFrom(language, "language");
  Progress silent{py::none()};
  return WithoutLock(silent, [&] { return std::make_shared<Upgrader>(options); });
}

py::list Known(const Upgrader& self) {
  py::list known;
  for (const hvxupgrade::KnownUpgrade& each : self.Known()) known.append(ToPython(each));
  return known;
}

py::object Upgrade(const Upgrader& self, const Held& held, const py::object& identifiers,
                   const py::object& retry, py::object told, const py::object& maxFeaturesCreated) {
  Progress progress(std::move(told));
  hvxupgrade::UpgradeOptions options;
  if (!identifiers.is_none()) options.identifiers = TextsFrom(identifiers, "identifiers");
  options.retry = FlagFrom(retry, "retry");
  options.onProgress = progress.Teller();
  options.maxFeaturesCreated = CountFrom(maxFeaturesCreated, "max_features_created").value_or(0);
  const HeldDocument::Work work(*held);
  return ToPython(WithoutLock(progress, [&] { return self.Upgrade(work.document, options); }));
}

}  // namespace

void BindUpgrader(py::module_& module) {
  py::class_<Upgrader, std::shared_ptr<Upgrader>> upgrader(module, "Upgrader",
                                                           R"(Brings documents up to the current data model.

          `libraries` are upgrade libraries, one path or several, to load besides the installed one, which
          `use_installed=False` leaves out. `data` is the folder of catalogs and messages, when it is not the
          installed one; `language` that of the names that upgrades give. Documents may outlive it. Threads
          may share one, each with documents of its own. All upgraders that there are at one time use the same
          data and language: UsageError.)");
  RefuseCopies(upgrader, "an upgrader", "make another one there");
  upgrader
      .def(py::init(&Make), py::arg("libraries") = py::tuple(), py::arg("use_installed") = true,
           py::arg("data") = py::none(), py::arg("language") = "en",
           R"(__init__($self, libraries=(), use_installed=True, data=None, language='en')
--

Loads libraries, catalogs and messages. Raises InstallationError.)")
      .def("__repr__",
           [](const Upgrader& self) { return fmt::format("<Upgrader of {} upgrades>", self.Known().size()); })
      .def_property_readonly("known", &Known, "All upgrades that are known, oldest first.")
      .def(
          "pending", [](const Upgrader& self, const Held& held) { return self.Pending(held->Open()); },
          py::arg("document"), R"(pending($self, document)
--

The identifiers that the document has not been through, oldest first.)")
      .def(
          "unknown", [](const Upgrader& self, const Held& held) { return self.Unknown(held->Open()); },
          py::arg("document"),
          R"(unknown($self, document)
--

The identifiers that the document has been through and nobody here knows. Such a document is not
          upgraded.)")
      .def(
          "upgrade", &Upgrade, py::arg("document"), py::arg("identifiers") = py::none(),
          py::arg("retry") = false, py::arg("progress") = py::none(), py::kw_only(),
          py::arg("max_features_created") = py::none(),
          R"(upgrade($self, document, identifiers=None, retry=False, progress=None, *, max_features_created=None)
--

Runs upgrades on the document, and records them in it.

          `identifiers`, one or several, chooses which; without it all that are pending run. `retry` runs
          those again that left features behind, on these. `progress(done, total)` is told visits of features;
          if it returns False, the run ends with StoppedError, and what it raises comes out as it is. The
          document then stands between two releases: it can be looked at, but neither written nor upgraded. A
          run that creates more than `max_features_created` is stopped, too; None, or 0, stands for many times
          what any upgrade that made sense has created. Raises UsageError for an unknown identifier or one
          that the document has been through, and NewerDocumentError for a document of a later release.)");
}

}  // namespace python
