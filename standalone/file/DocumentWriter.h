#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "model/Document.h"

namespace standalone {

struct WriteOptions {
  bool overwrite = false;    ///< Whether a file that stands there may be replaced.
  std::string backupSuffix;  ///< Where not empty, what is replaced is kept under its name with this suffix.
  /// Told, now and then, how many features were written and how many there are.
  std::function<void(std::size_t written, std::size_t total)> onProgress;
};

/// Writes the document to `file`, whole or not at all: it is written beside the file, brought to disk, and
/// renamed. Throws `DocumentError` (`kUnwritable`) when that fails; what stood under the name is then as it
/// was.
void WriteDocument(Document& document, const std::filesystem::path& file, const WriteOptions& options = {});

/// Puts a byte-for-byte copy of `source` in place as `WriteDocument` does.
void CopyDocument(const std::filesystem::path& source, const std::filesystem::path& file,
                  const WriteOptions& options);

}  // namespace standalone
