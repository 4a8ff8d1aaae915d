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
  bool makesFolder = false;  ///< Its folder need not exist before there is a result.
  std::string backupSuffix;

  /// "in place, the old document kept as bracket.hvxdoc.old", or the file's name.
  [[nodiscard]] std::string Text() const;
  [[nodiscard]] std::filesystem::path Backup() const;  ///< Empty without one.

  /// Whether the result takes the place of `document` itself, under whatever name.
  [[nodiscard]] bool Replaces(const std::filesystem::path& document) const;
  /// Whether the very bytes of `document` stand there already.
  [[nodiscard]] bool HoldsCopyOf(const std::filesystem::path& document) const;

  /// Throws `standalone::DocumentError` (`kUnwritable`) when it is plain before the run that the result
  /// cannot be put there.
  void Check() const;

  /// Makes the folder where that is wanted; throws as `Check` does. To be called when the result is ready.
  void MakeFolder() const;
};

/// Takes the folders away again that a run made, as far as nothing came to stand in them.
class EmptyFolders {
 public:
  /// `folder` is what the run may make, with the folders above it; empty for none.
  explicit EmptyFolders(const std::filesystem::path& folder);
  ~EmptyFolders();
  EmptyFolders(const EmptyFolders&) = delete;
  EmptyFolders& operator=(const EmptyFolders&) = delete;

 private:
  std::vector<std::filesystem::path> missing_;  // before the run, the innermost first
};

/// Throws `standalone::DocumentError` (`kUnwritable`) when something stands there that is no file, or that
/// may not be replaced.
void RefuseTaken(const std::filesystem::path& file, bool overwrite);

/// The destination of each document, in the same order. Throws `UsageError` when two results, or a result and
/// the report or trace, would go to the same file.
[[nodiscard]] std::vector<Destination> DestinationsOf(const UpgradeArguments& arguments);

}  // namespace tool
