#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "upgrade/UpgradeLibraries.h"
#include "upgrade/VersionManager.h"

namespace tool {

/// Where the user says that the program's files are; what is empty is looked for beside the executable.
struct Places {
  std::vector<std::filesystem::path> libraries;
  std::vector<std::filesystem::path> plugins;  ///< Folders of libraries.
  bool defaultLibrary = true;                  ///< Whether the installed library is one of them.
  std::filesystem::path data;
};

/// The environment variable that names folders of plug-ins, separated by ":".
inline constexpr const char* kPluginsVariable = "HVXUPGRADE_PLUGINS";

/// A loaded upgrade library, for reports.
struct LibraryFile {
  std::string name;
  std::string version;
  std::string file;                         ///< Absolute.
  std::string sha256;                       ///< Of the file, in hexadecimal digits.
  std::vector<std::string> continues = {};  ///< The names of the libraries that it continues.
};

/// The loaded upgrade libraries and what they know. While there is one, the catalogs are in use.
class Installation {
 public:
  /// Loads all that upgrades need, so that whatever is missing is known before any document is touched.
  /// Throws `std::runtime_error`, which names the file and the remedy, when a library cannot be loaded or
  /// does not fit this program or the others, or a catalog is missing, broken or incomplete; `UsageError`
  /// when there is no library at all. Tells of folders in the environment that hold none.
  explicit Installation(const Places& places);
  ~Installation();
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  [[nodiscard]] const standalone::VersionManager& Manager() const { return *manager_; }
  /// In the order of the libraries. Reads their files. Throws `std::runtime_error` when one cannot be read
  /// any more.
  [[nodiscard]] std::vector<LibraryFile> LibraryFiles() const;

 private:
  std::unique_ptr<standalone::UpgradeLibraries> libraries_;
  std::unique_ptr<standalone::VersionManager> manager_;  // refers to the libraries
};

/// The folder that holds the message catalogs ("messages", a folder per language in it), the feature catalogs
/// ("catalogs") and the pages and explanations of the upgrades ("upgrades").
[[nodiscard]] std::filesystem::path DataFolder(const Places& places);

}  // namespace tool
