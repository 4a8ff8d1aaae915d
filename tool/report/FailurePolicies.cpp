#include "report/FailurePolicies.h"

#include <algorithm>

namespace tool {
namespace {

constexpr FailurePolicy kPolicies[] = {
    {HVXOnFailure::kIgnore, "ignore", "a failure is ignored"},
    {HVXOnFailure::kStop, "stop", "a failure ends the upgrade of the feature with its code"},
    {HVXOnFailure::kLast, "last", "the upgrade continues and returns the result of the last routine run"},
    {HVXOnFailure::kSkip, "skip", "a failure skips what else this class does for the same upgrade"},
    {HVXOnFailure::kFirst, "first", "the routine ends the upgrade of the feature, with its result"},
};

}  // namespace

std::span<const FailurePolicy> FailurePolicies() {
  return kPolicies;
}

const FailurePolicy& PolicyOf(HVXOnFailure onFailure) {
  return *std::ranges::find(kPolicies, onFailure, &FailurePolicy::onFailure);
}

}  // namespace tool
