#pragma once

#include <simdjson.h>

#include <filesystem>

namespace standalone {

/// The bytes of a catalog. Throws `std::runtime_error`, which tells the cause, when the file cannot be read;
/// it says that the program is to be reinstalled only when the file is missing.
[[nodiscard]] simdjson::padded_string ReadCatalog(const std::filesystem::path& file);

}  // namespace standalone
