#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "upgrade/UpgradeLibrary.h"

namespace standalone {

/// The upgrade libraries that work together, loaded for the life of this object. Nothing that they made may
/// outlive it.
///
/// They have one order, whichever way they were given: the built-in library, then the others by name, byte by
/// byte, but each after those that it continues. Identifiers follow in the order of their libraries.
class UpgradeLibraries {
 public:
  /// Loads the files; one that is given twice, also under another name, once. Throws `std::runtime_error`,
  /// which names the files and what to do, when one cannot be loaded (`UpgradeLibrary`), or when they do not
  /// go together: two have one name, one continues another that is not there, two claim the same without one
  /// continuing the other, or their orders of upgrades contradict each other.
  explicit UpgradeLibraries(const std::vector<std::filesystem::path>& files);

  /// In their order.
  [[nodiscard]] const std::vector<std::unique_ptr<UpgradeLibrary>>& All() const { return libraries_; }
  /// The same, for a version manager.
  [[nodiscard]] std::vector<const HVXUpgradeLibrary*> Descriptions() const;

 private:
  std::vector<std::unique_ptr<UpgradeLibrary>> libraries_;
};

/// The upgrade libraries in a folder of plug-ins: the files beneath it whose names end in ".so", by name.
/// What is deeper, and hidden, is left out. Throws `std::runtime_error` when there is no such folder.
[[nodiscard]] std::vector<std::filesystem::path> PluginsIn(const std::filesystem::path& folder);

}  // namespace standalone
