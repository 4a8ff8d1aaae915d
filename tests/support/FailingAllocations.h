#pragma once

#include <cstddef>

namespace testing_support {

/// Whether this program can be made to run out of memory. A sanitizer's build cannot: it has an allocator of
/// its own.
[[nodiscard]] bool CanFailAllocations();

/// As long as it lives, allocations of this thread fail from the `countdown`th on, counted from 0.
class FailingAllocations {
 public:
  explicit FailingAllocations(std::size_t countdown);
  ~FailingAllocations();
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;

  /// Whether any has failed since the last of these was made.
  [[nodiscard]] static bool HaveFailed();
};

}  // namespace testing_support
