#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "file/Compression.h"
#include "file/RealPath.h"

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

/// Throws `standalone::DocumentError` (`kUnwritable`) when something stands there that is no file, or that
/// may not be replaced.
void RefuseTaken(const std::filesystem::path& file, bool overwrite);

/// Where a write to a file ends up: links are followed.
using standalone::RealPathOf;

}  // namespace tool
