#include "hvxupgrade/Difference.h"

#include <utility>

#include "compare/DocumentDifference.h"
#include "compare/FeatureDifference.h"
#include "compare/SinceRead.h"
#include "interface/Inside.h"

namespace hvxupgrade {
namespace {

using standalone::FeatureState;

// Null for a state that there was not, or is not.
Difference::ChangedFeature Told(const FeatureState* before, const FeatureState* after) {
  const FeatureState& told = after != nullptr ? *after : *before;
  Difference::ChangedFeature change;
  change.id = told.id;
  change.lateType = told.TypeName();
  for (standalone::FieldDifference& field : standalone::Differences(before, after))
    change.fields.push_back(
        {std::string(field.field), std::string(field.key), std::move(field.before), std::move(field.after)});
  return change;
}

// Those of upgrades that one document alone records are told with these.
std::vector<Difference::OtherSource> OtherSources(const standalone::DocumentDifference& found,
                                                  const standalone::Document& before,
                                                  const standalone::Document& after) {
  const auto add = [](const standalone::UpgradeSource* source, std::string& library, std::string& version) {
    if (source == nullptr) return;
    library = source->library;
    version = source->version;
  };
  std::vector<Difference::OtherSource> others;
  for (const auto& [upgrade, was, is] : found.sources) {
    if (!before.HasRecorded(upgrade) || !after.HasRecorded(upgrade)) continue;
    Difference::OtherSource& other = others.emplace_back();
    other.identifier = upgrade;
    add(was, other.libraryBefore, other.versionBefore);
    add(is, other.libraryAfter, other.versionAfter);
  }
  return others;
}

}  // namespace

bool Difference::IsEmpty() const {
  return upgradesBefore.empty() && upgradesAfter.empty() && otherSources.empty() && changed.empty() &&
         created.empty() && removed.empty() && moved.empty();
}

Difference Compare(Document& before, Document& after) {
  Inside::Of(before).DropAllDeadLinks();
  Inside::Of(after).DropAllDeadLinks();
  standalone::DocumentDifference found = standalone::Compare(Inside::Of(before), Inside::Of(after));
  Difference difference;
  difference.otherSources = OtherSources(found, Inside::Of(before), Inside::Of(after));
  difference.upgradesBefore = std::move(found.upgradesBefore);
  difference.upgradesAfter = std::move(found.upgradesAfter);
  for (const auto& [was, is] : found.changed) difference.changed.push_back(Told(was, is));
  for (const standalone::Feature* const each : found.created)
    difference.created.push_back(Told(nullptr, each));
  for (const standalone::Feature* const each : found.removed)
    difference.removed.push_back(Told(each, nullptr));
  for (const standalone::Feature* const each : found.moved) difference.moved.push_back(each->id);
  return difference;
}

Difference ChangesSinceRead(Document& document) {
  Inside::DocumentState& state = Inside::StateOf(document);
  standalone::Document& is = *state.document.Get();
  is.DropAllDeadLinks();
  const auto since = standalone::SinceRead::Of(is);
  Difference difference;
  difference.upgradesAfter.assign(is.Upgrades().begin() + static_cast<std::ptrdiff_t>(state.upgradesRead),
                                  is.Upgrades().end());
  for (const standalone::Feature* const each : since.changed)
    difference.changed.push_back(Told(is.Before(*each), each));
  for (const standalone::Feature* const each : since.created)
    difference.created.push_back(Told(nullptr, each));
  for (const standalone::Feature* const each : since.removed)
    difference.removed.push_back(Told(is.Before(*each), nullptr));
  return difference;
}

}  // namespace hvxupgrade
