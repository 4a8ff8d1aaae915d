#pragma once

#include <filesystem>

#include "workbench/HVXUpgradeTable.h"

namespace standalone {

/// An upgrade library in memory, loaded as a plug-in for the life of this object. Nothing that it made may
/// outlive it.
class UpgradeLibrary {
 public:
  /// Throws `std::runtime_error`, which names the file and what to do, when it cannot be loaded, is no
  /// upgrade library, was built for another interface than that of `HVXUpgradeTable.h` here, or has tables
  /// that nobody could work with. One that ends the program meanwhile is named (`LoadGuard`).
  explicit UpgradeLibrary(const std::filesystem::path& file);
  ~UpgradeLibrary();
  UpgradeLibrary(const UpgradeLibrary&) = delete;
  UpgradeLibrary& operator=(const UpgradeLibrary&) = delete;

  [[nodiscard]] const HVXUpgradeLibrary& Description() const { return *description_; }
  /// As it was given.
  [[nodiscard]] const std::filesystem::path& File() const { return file_; }

 private:
  std::filesystem::path file_;
  void* handle_ = nullptr;
  const HVXUpgradeLibrary* description_ = nullptr;
};

}  // namespace standalone
