#pragma once

#include <fmt/format.h>

#include <string>
#include <string_view>

#include "file/DocumentError.h"
#include "model/Document.h"
#include "record/DocumentResult.h"
#include "settings/ExitCode.h"

namespace tool {

/// Reads a document with progress on the terminal. Throws `standalone::DocumentError`.
[[nodiscard]] standalone::DocumentPtr ReadWithProgress(const std::string& file);

[[nodiscard]] ExitCode ExitCodeOf(const standalone::DocumentError& error);

/// Of a document that could not be read: `kNewer` or `kBadInput`.
[[nodiscard]] Verdict VerdictOf(const standalone::DocumentError& error);

/// The entry of a JSON list of documents for one of which nothing more is known.
void AppendUnreadable(fmt::memory_buffer& out, const std::string& file, Verdict verdict,
                      std::string_view problem);

}  // namespace tool
