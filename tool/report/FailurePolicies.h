#pragma once

#include <span>
#include <string_view>

#include "workbench/HVXUpgradeTable.h"

namespace tool {

/// What a failure of a routine does.
struct FailurePolicy {
  HVXOnFailure onFailure;
  std::string_view word;     ///< For programs: "ignore", "stop".
  std::string_view meaning;  ///< A clause for people: "a failure is ignored".
};

[[nodiscard]] std::span<const FailurePolicy> FailurePolicies();
[[nodiscard]] const FailurePolicy& PolicyOf(HVXOnFailure onFailure);

}  // namespace tool
