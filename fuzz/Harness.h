#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "upgrade/VersionManager.h"

namespace fuzzing {

/// The version manager with the upgrade library loaded, and catalogs and messages in use; made at the first
/// call.
[[nodiscard]] const standalone::VersionManager& Manager();

/// The document of these bytes; a null handle when they are refused, which they may be.
[[nodiscard]] standalone::DocumentPtr DocumentOf(const std::uint8_t* data, std::size_t size);
[[nodiscard]] standalone::DocumentPtr DocumentOf(const std::string& text);
/// A file in memory that holds the text, until the next one.
[[nodiscard]] const std::string& MemoryFileOf(const std::string& text);
/// What would be written.
[[nodiscard]] std::string TextOf(standalone::Document& document);

/// Ends the process, as a fault, unless `holds`.
void Require(bool holds, const char* what);

}  // namespace fuzzing
