#include "Comparison.h"

#include <algorithm>
#include <iterator>

#include "Interruption.h"
#include "compare/FeatureDifference.h"

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
  Comparison comparison;
  TotalsByType totals;
  const std::vector<Feature*>& touched = document.Touched();
  for (std::size_t place = 0; place < touched.size(); ++place) {
    const Feature* const feature = touched[place];
    Interruption::StopIfRequested();
    const FeatureState* const before = document.Before(*feature);
    if (before == nullptr && feature->removed) continue;
    if (before == nullptr) {
      comparison.created.push_back({feature, place});
      ++TotalsOf(totals, document, *feature).created;
    } else if (feature->removed) {
      comparison.removed.push_back({feature, place});
      ++TotalsOf(totals, document, *feature).removed;
    } else if (standalone::Differ(*before, *feature)) {
      comparison.changed.push_back({feature, place});
      ++TotalsOf(totals, document, *feature).changed;
    }
  }
  for (const standalone::FeatureOutcome& outcome : run.features) {
    Totals& ofType = TotalsOf(totals, document, *outcome.feature);
    ++ofType.concerned;
    if (!Failed(outcome.code)) continue;
    ++ofType.failed;
    comparison.failed.push_back(outcome);
  }
  std::ranges::copy_if(run.documentUpgrades, std::back_inserter(comparison.failedDocumentUpgrades),
                       [](const standalone::DocumentOutcome& outcome) { return Failed(outcome.code); });
  for (const auto& [type, ofType] : totals) {
    comparison.byType[std::string(type->Name())] += ofType;
    comparison.all += ofType;
  }
  return comparison;
}

}  // namespace tool
