#pragma once

#include <filesystem>

namespace standalone {

/// The absolute path of `file` with all links followed, of what exists of it; two names of one place give the
/// same.
[[nodiscard]] std::filesystem::path RealPathOf(const std::filesystem::path& file);

}  // namespace standalone
