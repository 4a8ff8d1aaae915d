#include <pybind11/pybind11.h>

#include "native/Bindings.h"
#include "native/Errors.h"
#include "native/Results.h"

PYBIND11_MODULE(_native, module) {
  module.doc() = "What hvxupgrade has from the shared library; use it by way of hvxupgrade.";
  pybind11::options options;
  options.disable_function_signatures();  // the stubs have them, in Python's words
  python::LoadResults();
  python::TranslateErrors();
  python::BindFeature(module);
  python::BindDocument(module);
  python::BindReading(module);
  python::BindUpgrader(module);
}
