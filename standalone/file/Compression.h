#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>

namespace standalone {

/// How a file is stored.
enum class Compression : std::uint8_t { kNone, kGzip, kZstd };

/// So many bytes at the beginning of a file tell how it is compressed.
inline constexpr std::size_t kCompressionBytes = 4;

/// Told by the first bytes of a file; they may be fewer than `kCompressionBytes` when the file is shorter.
[[nodiscard]] Compression CompressionOf(std::string_view start);
/// What the name of a new file asks for: it ends with ".gz", with ".zst" or otherwise.
[[nodiscard]] Compression CompressionNamed(const std::filesystem::path& file);
/// "gzip" or "zstd"; empty for none.
[[nodiscard]] std::string_view NameOf(Compression compression);

}  // namespace standalone
