#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.h"

namespace tool {

/// Where one document's result goes.
struct Destination {
  std::optional<std::filesystem::path> file;  ///< None when the user gave no place for it (dry run).
  bool inPlace = false;
  bool overwrite = false;
  bool makesFolder = false;  ///< Its folder need not exist yet.
  std::string backupSuffix;

  /// "in place, the old document kept as bracket.hvxdoc.old", or the file's name.
  [[nodiscard]] std::string Text() const;
  [[nodiscard]] std::filesystem::path Backup() const;  ///< Empty without one.

  /// Throws `standalone::DocumentError` (`kUnwritable`) when it is plain before the run that the result
  /// cannot be put there.
  void Check() const;
};

/// The destination of each document, in the same order. Throws `UsageError` when two results, or a result and
/// the report or trace, would go to the same file.
[[nodiscard]] std::vector<Destination> DestinationsOf(const UpgradeArguments& arguments);

}  // namespace tool
