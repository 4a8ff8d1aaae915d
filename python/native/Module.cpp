#include <dlfcn.h>
#include <fmt/format.h>
#include <pybind11/pybind11.h>

#include "hvxupgrade/Reader.h"
#include "native/Arguments.h"
#include "native/Bindings.h"
#include "native/Errors.h"
#include "native/Results.h"
#include "native/Values.h"

namespace {

// Upgrade libraries find the host's operations among the symbols that everyone sees. Python shows what a
// module brings along to that module only.
void ShowHostToUpgradeLibraries() {
  Dl_info info{};
  const auto* const here = reinterpret_cast<const void*>(&hvxupgrade::ReadHeader);
  if (dladdr(here, &info) == 0 || dlopen(info.dli_fname, RTLD_NOW | RTLD_GLOBAL | RTLD_NOLOAD) == nullptr)
    throw pybind11::import_error("the shared library of hvxupgrade cannot be shown to upgrade libraries");
}

}  // namespace

namespace python {

void RefuseCopies(const pybind11::object& type, std::string_view what, std::string_view instead) {
  type.attr("__reduce__") = pybind11::cpp_function(
      [text = fmt::format("{} cannot be copied or passed to another process: {}", what, instead)](
          const pybind11::object& /*self*/) -> pybind11::object { throw pybind11::type_error(text); },
      pybind11::name("__reduce__"), pybind11::is_method(type));
}

std::string RepresentationOf(std::string_view what, hvxupgrade::FeatureId id, std::string_view lateType,
                             std::string_view alias, std::string_view name) {
  const std::string_view shown = alias.empty() ? name : alias;
  return fmt::format("<{} {} {}{}>", what, id, lateType, shown.empty() ? "" : ' ' + Quoted(shown));
}

}  // namespace python

PYBIND11_MODULE(_native, module) {
  module.doc() = "What hvxupgrade has from the shared library; use it by way of hvxupgrade.";
  pybind11::options options;
  options.disable_function_signatures();  // the stubs have them, in Python's words
  ShowHostToUpgradeLibraries();
  module.attr("__version__") = HVX_VERSION;
  module.attr("__module__") = "hvxupgrade";  // classes and functions take theirs from it
  python::LoadArguments();
  python::LoadResults();
  python::TranslateErrors();
  python::BindFeature(module);
  python::BindDocument(module);
  python::BindReading(module);
  python::BindUpgrader(module);
  pybind11::delattr(module, "__module__");
}
