#include <dlfcn.h>
#include <pybind11/pybind11.h>

#include "hvxupgrade/Reader.h"
#include "native/Bindings.h"
#include "native/Errors.h"
#include "native/Results.h"

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

PYBIND11_MODULE(_native, module) {
  module.doc() = "What hvxupgrade has from the shared library; use it by way of hvxupgrade.";
  pybind11::options options;
  options.disable_function_signatures();  // the stubs have them, in Python's words
  ShowHostToUpgradeLibraries();
  python::LoadResults();
  python::TranslateErrors();
  python::BindFeature(module);
  python::BindDocument(module);
  python::BindReading(module);
  python::BindUpgrader(module);
}
