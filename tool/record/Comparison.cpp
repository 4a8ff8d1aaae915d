#include "record/Comparison.h"

#include <unordered_map>
#include <unordered_set>

#include "terminal/Interruption.h"

namespace tool {
namespace {

using standalone::Document;
using standalone::Feature;
using standalone::FeatureState;
using standalone::LateType;

// Counts by late type without a look-up of texts per feature.
using TotalsByType = std::unordered_map<const LateType*, Totals>;

Totals& TotalsOf(TotalsByType& totals, const Document& document, const Feature& feature) {
  const FeatureState* const before = document.Before(feature);
  return totals[before == nullptr ? feature.type : before->type];
}

}  // namespace

Totals& Totals::operator+=(const Totals& other) {
  concerned += other.concerned;
  changed += other.changed;
  created += other.created;
  removed += other.removed;
  failed += other.failed;
  return *this;
}

Comparison Compare(const Document& document, const standalone::UpgradeRun& run) {
  Interruption::StopIfRequested();
  Comparison comparison{standalone::SinceRead::Of(document), {}, {}};
  TotalsByType totals;
  for (const Feature* const feature : comparison.created) ++TotalsOf(totals, document, *feature).created;
  for (const Feature* const feature : comparison.removed) ++TotalsOf(totals, document, *feature).removed;
  for (const Feature* const feature : comparison.changed) ++TotalsOf(totals, document, *feature).changed;
  for (const auto& [type, count] : run.concerned) totals[type].concerned += count;
  std::unordered_set<const Feature*> failed;
  for (const standalone::UpgradeFailure& failure : run.failures) {
    const Feature* const feature = failure.work.feature;
    if (feature != nullptr && failed.insert(feature).second) ++TotalsOf(totals, document, *feature).failed;
  }
  for (const auto& [type, ofType] : totals) {
    comparison.byType[std::string(type->Name())] += ofType;
    comparison.all += ofType;
  }
  return comparison;
}

}  // namespace tool
