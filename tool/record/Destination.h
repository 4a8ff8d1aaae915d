#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "file/Compression.h"
#include "record/GivenDocument.h"
#include "settings/Arguments.h"

namespace tool {

/// Where one document's result goes.
struct Destination {
  std::optional<std::filesystem::path> file;  ///< None when the user gave no file for it.
  bool isOutput = false;                      ///< It goes to standard output; there is no file.
  bool inPlace = false;
  bool overwrite = false;
  bool makesFolder = false;  ///< Its folder need not exist before there is a result.
  std::string backupSuffix;
  std::string clash;  ///< With what else of the same run, that comes first; mostly empty.

  [[nodiscard]] bool IsNone() const { return !file && !isOutput; }
  /// "in place, the old document kept as bracket.hvxdoc.old", or the file's name.
  [[nodiscard]] std::string Text() const;
  [[nodiscard]] std::filesystem::path Backup() const;  ///< Empty without one.

  /// Whether the result takes the place of `document` itself, under whatever name.
  [[nodiscard]] bool Replaces(const std::filesystem::path& document) const;
  /// How the result for `document`, which is stored as `stored`, is to be stored: as the name says that the
  /// user gave (-o), else as the document is.
  [[nodiscard]] standalone::Compression CompressionFor(const std::filesystem::path& document,
                                                       standalone::Compression stored) const;
  /// Whether the very bytes of `document` stand there already.
  [[nodiscard]] bool HoldsCopyOf(const std::filesystem::path& document) const;

  /// Throws `standalone::DocumentError` (`kUnwritable`) when it is plain before the run that the result
  /// cannot be put there.
  void Check() const;

  /// Makes the folder where that is wanted; throws as `Check` does. To be called when the result is ready.
  void MakeFolder() const;
};

/// Makes a folder, with those above it; throws as `Destination::Check` does.
void MakeFolder(const std::filesystem::path& folder);

/// Takes the folders away again that a run made, as far as nothing came to stand in them.
class EmptyFolders {
 public:
  /// The run may make the folders of these destinations, with the folders above them.
  explicit EmptyFolders(const std::vector<Destination>& destinations);
  ~EmptyFolders();
  EmptyFolders(const EmptyFolders&) = delete;
  EmptyFolders& operator=(const EmptyFolders&) = delete;

 private:
  std::set<std::filesystem::path, std::greater<>> missing_;  // before the run, the inner ones first
};

/// Throws `standalone::DocumentError` (`kUnwritable`) when something stands there that is no file, or that
/// may not be replaced.
void RefuseTaken(const std::filesystem::path& file, bool overwrite);

/// The destination of each document, in the same order. Where two results would go to the same file, the
/// later one bears the clash. Throws `UsageError` when the report or trace would take the place of a
/// document, a result or a backup, and when several documents would go to one file that was named.
[[nodiscard]] std::vector<Destination> DestinationsOf(const UpgradeArguments& arguments,
                                                      const std::vector<GivenDocument>& documents);

}  // namespace tool
