#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace tool {

/// How far the upgrade of one document may go before it is given up; empty for what is not limited, and for
/// the default where the user may choose.
struct Limits {
  std::optional<double> seconds;           ///< 0 for no limit.
  std::optional<std::size_t> features;     ///< That may be made. 0 for no limit.
  std::optional<std::uint64_t> megabytes;  ///< Of memory. 0 for no limit.
  std::optional<std::uint64_t> unpacked;   ///< MB that a compressed document may unpack to. 0 for no limit.
};

/// How many bytes of text a document holds, as far as its file tells without being unpacked; 0 for a pipe.
[[nodiscard]] std::uint64_t TextBytes(const std::filesystem::path& document);
/// The time that a document may take: what the user chose, or enough for many times what a document of that
/// size takes. Empty for no limit.
[[nodiscard]] std::optional<std::chrono::duration<double>> TimeLimit(const Limits& limits,
                                                                     std::uint64_t textBytes);
/// How many bytes a compressed document may unpack to; empty for the default.
[[nodiscard]] std::optional<std::uint64_t> UnpackedLimit(const Limits& limits);
/// How many features may be made in a document that holds so many.
[[nodiscard]] std::size_t FeatureLimit(const Limits& limits, std::size_t features);

/// Limits the memory of this process to what the user chose, or to what is there; the program says that there
/// is not enough instead of driving others out. To be called in the worker.
void LimitMemory(const Limits& limits);
/// Such as " (the limit is 4096 MB; --limit-memory raises it)"; empty where none was set.
[[nodiscard]] std::string MemoryLimitText();

}  // namespace tool
