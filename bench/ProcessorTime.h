#pragma once

#include <sys/resource.h>

namespace bench {

/// Processor time of this process, in seconds: unlike the time on the wall it does not count what others do
/// meanwhile.
inline double ProcessorTime() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace bench
