#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace bench {

/// What one document goes through, in this order.
enum Stage : std::size_t { kRead, kCheck, kUpgrade, kVerify, kSheet, kWrite, kCompare, kStages };
constexpr std::array<std::string_view, kStages> kStageNames = {"read",  "check", "upgrade", "verify",
                                                               "sheet", "write", "compare"};

/// What a trip cost.
struct Cost {
  std::array<double, kStages> seconds{};  ///< Of the processor.
  double peakBytes = 0.0;                 ///< The most memory that the process held.
  double hostCalls = 0.0;                 ///< Only where they were counted.
  double allocations = 0.0;               ///< The same: how often memory was asked for, ...
  double allocatedBytes = 0.0;            ///< ... and how much in all.
  bool wentThrough = false;               ///< Whether no stage refused the document or gave it up.

  [[nodiscard]] double Seconds() const {
    double total = 0.0;
    for (const double each : seconds) total += each;
    return total;
  }
};

/// What a trip does besides reading, verifying, writing and comparing.
struct TripOptions {
  bool upgrade = true;
  /// Counts host calls and, in a program with `CountedAllocations.cpp`, allocations. The seconds say little
  /// then.
  bool count = false;
};

/// Takes the document `input` through all stages, in a process of its own: what one document leaves in tables
/// of names must not help or hinder the next. A document that is refused, or given up, costs what was done
/// until then. Throws as `InOwnProcess`.
[[nodiscard]] Cost MeasureTrip(const std::string& input, const std::string& output,
                               const TripOptions& options);

/// How often and how much memory this process asked for; counted where `CountedAllocations.cpp` is linked in.
struct AllocationCount {
  std::uint64_t count = 0;
  std::uint64_t bytes = 0;
};
extern AllocationCount allocationCount;

}  // namespace bench
