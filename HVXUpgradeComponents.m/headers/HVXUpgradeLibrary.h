#pragma once

#include <span>
#include <string_view>

#include "base/VLMLibrary.h"
#include "workbench/HVXUpgradeTable.h"

/// \file
/// What every upgrade library defines once, beside its classes.

/// This library as the host's registry sees it, from its loading to its unloading. Classes register their
/// meta-objects with it.
[[nodiscard]] const VLMLibrary& HVXThisLibrary();

/// What this library offers, for version managers and tools.
extern "C" __attribute__((visibility("default"))) const HVXUpgradeLibrary* HVXGetUpgradeLibrary();

/// The declaration of a library's classes to the host. A static object, so that the ties stand in the host's
/// registry while the library is loaded, and are withdrawn when it is unloaded.
class HVXUpgradeDeclarations {
 public:
  /// Declares each class for each of its late types. Where a late type has the interface already, the first
  /// declaration stays.
  HVXUpgradeDeclarations(std::string_view library, std::span<const HVXUpgradeClass* const> classes);

  [[nodiscard]] const VLMLibrary& Library() const { return library_; }

 private:
  VLMLibrary library_;
};
