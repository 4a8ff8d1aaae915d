#pragma once

#include <filesystem>
#include <string>

namespace standalone {

/// Why the file can be no upgrade library of this program, and what to do; empty when it may be one. Looks at
/// what the loader tells badly or dies of.
[[nodiscard]] std::string FaultOfFile(const std::filesystem::path& file);

/// The same of a file that the loader just refused to load under this name, from what it told.
[[nodiscard]] std::string FaultToldByLoader(const std::filesystem::path& file);

}  // namespace standalone
