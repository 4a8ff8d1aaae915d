#include "settings/Limits.h"

#include <fmt/format.h>
#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <limits>

#include "file/StoredText.h"
#include "settings/Machine.h"
#include "upgrade/Choice.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

// A document of 1 MB takes about a tenth of a second, on a slow disk or under a tool that checks memory much
// longer.
constexpr double kSecondsOfAnyDocument = 120;
constexpr double kSecondsPerMegabyte = 2;
constexpr double kMegabyte = 1e6;

constexpr std::uint64_t kBytesPerMegabyte = std::uint64_t{1} << 20U;

// AddressSanitizer reserves far more than is used.
#ifdef HVX_SANITIZED
constexpr bool kReservesMuch = true;
#else
constexpr bool kReservesMuch = false;
#endif

std::uint64_t memoryLimit = 0;  // of this process, in MB; 0 for none

}  // namespace

std::uint64_t TextBytes(const fs::path& document) {
  std::error_code error;
  if (!fs::is_regular_file(document, error)) return 0;  // a pipe must not be read before the document is
  const std::uint64_t stored = fs::file_size(document, error);
  if (error) return 0;
  std::array<char, standalone::kCompressionBytes> start{};
  std::ifstream file(document, std::ios::binary);
  file.read(start.data(), start.size());
  const auto compression = standalone::CompressionOf({start.data(), static_cast<std::size_t>(file.gcount())});
  return standalone::LikelyTextBytes(compression, stored);
}

std::optional<std::chrono::duration<double>> TimeLimit(const Limits& limits, std::uint64_t textBytes) {
  const double seconds =
      limits.seconds
          ? *limits.seconds
          : kSecondsOfAnyDocument + kSecondsPerMegabyte * static_cast<double>(textBytes) / kMegabyte;
  if (seconds == 0) return std::nullopt;
  return std::chrono::duration<double>(seconds);
}

std::size_t FeatureLimit(const Limits& limits, std::size_t features) {
  const std::size_t most = limits.features.value_or(standalone::UsualCreationLimit(features));
  return most == 0 ? std::numeric_limits<std::size_t>::max() : most;
}

std::optional<std::uint64_t> UnpackedLimit(const Limits& limits) {
  if (!limits.unpacked) return std::nullopt;
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  const bool isNone = *limits.unpacked == 0 || *limits.unpacked > kMost / kBytesPerMegabyte;
  return isNone ? kMost : *limits.unpacked * kBytesPerMegabyte;
}

void LimitMemory(const Limits& limits) {
  if (kReservesMuch) return;
  std::optional<std::uint64_t> megabytes = limits.megabytes;
  if (!megabytes) {
    if (const auto available = AvailableMemory()) megabytes = *available / kBytesPerMegabyte;
  }
  if (!megabytes || *megabytes == 0) return;
  memoryLimit = *megabytes;
  rlimit limit{};
  if (getrlimit(RLIMIT_DATA, &limit) != 0) return;
  limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, memoryLimit * kBytesPerMegabyte);
  static_cast<void>(setrlimit(RLIMIT_DATA, &limit));
}

std::string MemoryLimitText() {
  rlimit space{};
  if (getrlimit(RLIMIT_AS, &space) == 0 && space.rlim_cur != RLIM_INFINITY) {
    const std::uint64_t megabytes = space.rlim_cur / kBytesPerMegabyte;
    if (memoryLimit == 0 || megabytes < memoryLimit)
      return fmt::format(
          " (the limit is {} MB, which was set before the program began; \"ulimit -v\" raises it)",
          megabytes);
  }
  if (memoryLimit == 0) return {};
  return fmt::format(" (the limit is {} MB; --limit-memory raises it)", memoryLimit);
}

}  // namespace tool
