#pragma once

#include <filesystem>
#include <string_view>

namespace standalone {

/// The files that belong to this library: found beside it, so that an installation can be moved as a whole.
class InstalledFiles {
 public:
  InstalledFiles() = delete;

  /// Puts the feature catalogs and the messages in use, which upgrades need. Throws `std::runtime_error`,
  /// which names the file and the remedy, when one is missing, broken or incomplete.
  static void Use(std::string_view language = "en");

  /// The upgrade library that is installed with this one.
  [[nodiscard]] static std::filesystem::path UpgradeLibraryFile();

  /// The folder of "catalogs" and "messages".
  [[nodiscard]] static std::filesystem::path DataFolder();
};

}  // namespace standalone
