#include "report/SheetPart.h"

#include <algorithm>

namespace tool {

bool SheetPart::Holds(const standalone::sheet::Subject& subject) const {
  const auto isAmong = [](const std::vector<standalone::FeatureId>& ids, const standalone::Feature* feature) {
    return ids.empty() || (feature != nullptr && std::ranges::find(ids, feature->id) != ids.end());
  };
  return isAmong(cases, subject.analysisCase) && isAmong(steps, subject.step);
}

std::size_t CountOf(const standalone::sheet::SheetComparison& comparison, const SheetPart& part,
                    standalone::sheet::Meaning meaning) {
  return static_cast<std::size_t>(
      std::ranges::count_if(comparison.differences, [&](const standalone::sheet::Difference& difference) {
        return difference.meaning == meaning && part.Holds(difference);
      }));
}

}  // namespace tool
