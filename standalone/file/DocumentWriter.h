#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "file/Compression.h"
#include "file/FileDigest.h"
#include "file/FileIdentity.h"
#include "model/Document.h"

namespace standalone {

struct WriteOptions {
  bool overwrite = false;    ///< Whether a file that stands there may be replaced.
  std::string backupSuffix;  ///< Where not empty, what is replaced is kept under its name with this suffix.
  /// Where set: what the file must still be when it is replaced.
  std::optional<FileIdentity> replaces;
  /// Where the file is something else by then: whether the result is kept beside it, under a name that is
  /// free.
  bool keepResult = false;
  /// What to do then, as the end of a sentence.
  std::string_view changedAdvice = "run the upgrade again";
  Compression compression = Compression::kNone;  ///< How a document is to be stored.
  /// Where set, gets the digest of the file as it is stored: before `onProgress` tells that all is written.
  FileDigest* digest = nullptr;
  /// Told, now and then, how many features (of a copy: bytes) were written and how many there are. Both are
  /// the same once only: when all that is left is to put the file in place.
  std::function<void(std::size_t written, std::size_t total)> onProgress;
};

/// Writes the document to `file`, whole or not at all: it is written beside the file, brought to disk, and
/// renamed. What it replaces hands its owner, group, rights and extended attributes down to it. Throws
/// `DocumentError` (`kUnwritable`) when that fails, `ChangedMeanwhile` when the file is not what it must be;
/// what stood under the name is then as it was.
void WriteDocument(Document& document, const std::filesystem::path& file, const WriteOptions& options = {});

/// Writes the document to an open file, such as a pipe, of which messages tell as `name`. Throws
/// `DocumentError` (`kUnwritable`) when that fails; what is written by then stays. Of the options only how
/// it is stored and `onProgress` count.
void StreamDocument(Document& document, int descriptor, std::string_view name, const WriteOptions& options);

/// Puts a byte-for-byte copy of `source`, compressed or not, in place as `WriteDocument` does. `read`, where
/// it is given, is what `source` must still be after that: else throws `ChangedMeanwhile`, and nothing is
/// there.
void CopyDocument(const std::filesystem::path& source, const std::filesystem::path& file,
                  const WriteOptions& options, const std::optional<FileIdentity>& read = std::nullopt);

}  // namespace standalone
