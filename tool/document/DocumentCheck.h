#pragma once

#include <string>

#include "record/CheckedDocument.h"
#include "upgrade/VersionManager.h"

namespace tool {

/// Reads a document and holds it against the rules, unless the version manager refuses it: what a later
/// release, or a library that is not loaded, calls current is not known here. `withProgress`: shows on the
/// terminal how far the reading is. Throws `standalone::DocumentError`.
[[nodiscard]] CheckedDocument CheckDocument(const std::string& file,
                                            const standalone::VersionManager& manager, bool withProgress);

}  // namespace tool
