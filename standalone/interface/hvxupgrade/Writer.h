#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "hvxupgrade/Document.h"
#include "hvxupgrade/Error.h"

namespace hvxupgrade {

/// How a file is stored.
enum class Compression { kNone, kGzip, kZstd };

struct WriteOptions {
  bool overwrite = false;  ///< Whether a file that stands there may be replaced.
  /// Where not empty, what is replaced is kept in its folder, under its name with this suffix, which has
  /// neither '/' nor a null character.
  std::string backupSuffix = {};
  /// How the document is to be stored. None: as it is stored in the file that is replaced, where the document
  /// was read from that or written to it; else as the file's name says (".gz", ".zst").
  std::optional<Compression> compression = std::nullopt;
  /// Told, now and then, by the thread that writes, how many features were written and how many there are.
  /// False ends the writing with `Error` (`kStopped`), and so does what it throws, which comes out as it is.
  std::function<bool(std::uint64_t written, std::uint64_t total)> onProgress = nullptr;
};

/// Writes the document to `file`, whole or not at all: it is written beside the file, brought to disk, and
/// renamed. Throws `Error`: `kUnwritable` when that fails, or when the document, once written, could not be
/// read again; `kChanged` when the document was read from this file, or written to it, and somebody else has
/// changed the file since; `kUsage` after an upgrade that was stopped, and for a bad suffix. What stood under
/// the name is then as it was.
HVXUPGRADE_API void Write(Document& document, const std::filesystem::path& file,
                          const WriteOptions& options = {});

}  // namespace hvxupgrade
