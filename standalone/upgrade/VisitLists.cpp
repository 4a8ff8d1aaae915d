#include "upgrade/VisitLists.h"

#include <algorithm>

namespace standalone {

VisitLists::VisitLists(Document& document, std::vector<bool> wanted)
    : document_(document), wanted_(std::move(wanted)) {
  ListAnew();
}

std::vector<Feature*> VisitLists::Of(const std::vector<NameId>& types) {
  CatchUp();
  std::vector<Entry> entries;
  for (const NameId type : types) {
    if (type >= byType_.size()) continue;
    const auto before = static_cast<std::ptrdiff_t>(entries.size());
    std::ranges::copy_if(byType_[type], std::back_inserter(entries), [type](const Entry& entry) {
      return !entry.feature->removed && entry.feature->type->Id() == type;
    });
    std::ranges::inplace_merge(entries, entries.begin() + before, {}, &Entry::place);
  }
  std::vector<Feature*> features;
  features.reserve(entries.size());
  for (const Entry& entry : entries) features.push_back(entry.feature);
  return features;
}

bool VisitLists::IsWanted(const Feature& feature) const {
  const NameId type = feature.type->Id();
  return !feature.removed && type < wanted_.size() && wanted_[type];
}

void VisitLists::Append(Feature& feature) {
  const NameId type = feature.type->Id();
  if (type >= byType_.size()) byType_.resize(type + 1);
  byType_[type].push_back({nextPlace_++, &feature});
}

void VisitLists::ListAnew() {
  for (std::vector<Entry>& entries : byType_) entries.clear();
  nextPlace_ = 0;
  touchedSeen_ = document_.Touched().size();
  document_.ForgetRearranged();
  for (Feature* feature = document_.First(); feature != nullptr; feature = feature->next) {
    if (IsWanted(*feature)) Append(*feature);
  }
}

void VisitLists::CatchUp() {
  const bool isStale = std::ranges::any_of(document_.Rearranged(),
                                           [this](const Feature* feature) { return IsWanted(*feature); });
  if (isStale) return ListAnew();
  document_.ForgetRearranged();
  // What was made and not moved stands at the document's end, in the order in which it was made.
  const std::vector<Feature*>& touched = document_.Touched();
  for (; touchedSeen_ < touched.size(); ++touchedSeen_) {
    Feature& feature = *touched[touchedSeen_];
    if (feature.created && IsWanted(feature)) Append(feature);
  }
}

}  // namespace standalone
