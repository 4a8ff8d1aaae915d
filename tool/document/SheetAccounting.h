#pragma once

#include <filesystem>
#include <string>

#include "model/Document.h"
#include "sheet/Comparison.h"

namespace tool {

/// A document with what it says.
struct DocumentSheet {
  std::string file;
  standalone::DocumentPtr document;
  standalone::sheet::Sheet sheet;
};

/// Reads both; shows progress. Throws `standalone::DocumentError` when the document cannot be read.
[[nodiscard]] DocumentSheet ReadDocumentSheet(const std::string& file);
[[nodiscard]] DocumentSheet SheetFor(const std::string& file, standalone::DocumentPtr document);

/// Compares two documents by what upgrades can have run in between. `messages`: the folder of the message
/// catalogs. The result refers to both.
[[nodiscard]] standalone::sheet::SheetComparison AccountFor(const DocumentSheet& before,
                                                            const DocumentSheet& after,
                                                            const std::filesystem::path& messages);

}  // namespace tool
