#pragma once

#include <string>

#include "ExitCode.h"
#include "file/DocumentError.h"
#include "model/Document.h"

namespace tool {

/// Reads a document with progress on the terminal. Throws `standalone::DocumentError`.
[[nodiscard]] standalone::DocumentPtr ReadWithProgress(const std::string& file);

[[nodiscard]] ExitCode ExitCodeOf(const standalone::DocumentError& error);

}  // namespace tool
