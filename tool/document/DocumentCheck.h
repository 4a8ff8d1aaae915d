#pragma once

#include <string>

#include "record/CheckedDocument.h"
#include "upgrade/VersionManager.h"

namespace tool {

/// Reads a document and holds it against the rules; what a later release calls current is not known here, so
/// its documents are not looked at. `withProgress`: shows on the terminal how far the reading is. Throws
/// `standalone::DocumentError`.
[[nodiscard]] CheckedDocument CheckDocument(const std::string& file,
                                            const standalone::VersionManager& manager, bool withProgress);

}  // namespace tool
