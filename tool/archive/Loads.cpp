#include "archive/Loads.h"

#include <algorithm>

#include "settings/Machine.h"

namespace tool {
namespace {

// A worker needs so much memory for any document, and for each byte of one. Measured: 14 MB for small ones,
// and four times the size of large ones; the change log for a report can double that.
constexpr std::uint64_t kMemoryOfAnyDocument = std::uint64_t{32} << 20U;
constexpr std::uint64_t kMemoryPerByte = 8;
constexpr std::uint64_t kBytesPerMegabyte = std::uint64_t{1} << 20U;

}  // namespace

Load LoadOf(const std::string& document, const Limits& limits) {
  Load load;
  load.bytes = TextBytes(document);
  load.memory = kMemoryOfAnyDocument + kMemoryPerByte * load.bytes;
  if (const auto limit = TimeLimit(limits, load.bytes))
    load.timeLimit = std::chrono::duration_cast<Clock::duration>(*limit);
  return load;
}

Supervisor::Settings SettingsFor(const ManyDocuments& many, std::size_t documents) {
  Supervisor::Settings settings;
  settings.workers = many.workers.value_or(UsableCores());
  settings.workers = std::clamp<std::size_t>(settings.workers, 1, std::max<std::size_t>(1, documents));
  constexpr std::uint64_t kMost = UINT64_MAX / kBytesPerMegabyte;
  settings.memory =
      many.megabytes ? std::min(*many.megabytes, kMost) * kBytesPerMegabyte : AvailableMemory().value_or(0);
  return settings;
}

}  // namespace tool
