#include "settings/Machine.h"

#include <sched.h>

#include <algorithm>
#include <fstream>
#include <string>

namespace tool {
namespace {

// The number behind `word` at the beginning of a line, in bytes; empty without one, such as for "max".
std::optional<std::uint64_t> NumberIn(const char* file, const std::string& word, std::uint64_t unit) {
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) {
    if (!line.starts_with(word)) continue;
    const std::size_t digits = line.find_first_of("0123456789", word.size());
    if (digits != std::string::npos) return std::stoull(line.substr(digits)) * unit;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::uint64_t> AvailableMemory() {
  std::optional<std::uint64_t> available = NumberIn("/proc/meminfo", "MemAvailable:", 1024);
  const auto most = NumberIn("/sys/fs/cgroup/memory.max", "", 1);
  const auto used = NumberIn("/sys/fs/cgroup/memory.current", "", 1);
  if (most && used) {
    const std::uint64_t left = *most - std::min(*most, *used);
    available = available ? std::min(*available, left) : left;
  }
  return available;
}

std::size_t UsableCores() {
  cpu_set_t set;
  CPU_ZERO(&set);
  std::size_t cores = 1;
  if (sched_getaffinity(0, sizeof set, &set) == 0) cores = static_cast<std::size_t>(CPU_COUNT(&set));
  // "max 100000" without a limit, else microseconds in each so many.
  std::ifstream stream("/sys/fs/cgroup/cpu.max");
  std::uint64_t quota = 0;
  std::uint64_t period = 0;
  if (stream >> quota >> period && period != 0)
    cores = std::min<std::size_t>(cores, (quota + period - 1) / period);
  return std::max<std::size_t>(cores, 1);
}

std::size_t PeakMemory() {
  return NumberIn("/proc/self/status", "VmHWM:", 1024).value_or(0);
}

void ResetPeakMemory() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

}  // namespace tool
