#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "upgrade/VersionManager.h"

namespace tool {

/// What was at work when a feature was first changed, made or removed in a run, in the report's words. Which
/// of several identifiers of one visit it was is not known: a class runs them in one call.
class Causes {
 public:
  /// Both must outlive it.
  Causes(const standalone::UpgradeRun& run, const standalone::VersionManager& manager)
      : run_(run), manager_(manager) {}

  /// A JSON object for the feature that stands at `place` among those the document was told to have touched.
  /// Valid until the next call.
  std::string_view Of(std::size_t place);

 private:
  [[nodiscard]] std::string TextOfVisit(const standalone::FeatureOutcome& visit);
  [[nodiscard]] const std::vector<std::string>& IdentifiersFor(const standalone::LateType& type);

  const standalone::UpgradeRun& run_;
  const standalone::VersionManager& manager_;
  std::unordered_map<const standalone::LateType*, std::vector<std::string>> identifiers_;
  const void* latest_ = nullptr;  // features touched one after the other mostly have the same cause
  std::string text_;
};

}  // namespace tool
