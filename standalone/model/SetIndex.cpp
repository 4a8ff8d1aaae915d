#include "model/SetIndex.h"

namespace standalone {

void SetIndex::NoteDisturbed(const Feature& feature) {
  if (feature.type->IsAnalysisSet()) byType_[feature.type].areStale = true;
}

std::vector<Feature*> SetIndex::OfKind(std::string_view lateTypeOrKind, Feature* first) {
  std::vector<Feature*> sets;
  int types = 0;
  for (auto& [type, ofType] : byType_) {
    if (!type->MetaClass().IsAKindOf(lateTypeOrKind)) continue;
    if (ofType.areStale) ListAnew(ofType, *type, first);
    if (!ofType.features.empty() && ++types == 1) sets = ofType.features;
  }
  if (types <= 1) return sets;

  // Sets of several late types stand among each other.
  sets.clear();
  for (Feature* feature = first; feature != nullptr; feature = feature->next) {
    if (feature->type->IsAnalysisSet() && feature->type->MetaClass().IsAKindOf(lateTypeOrKind)) {
      sets.push_back(feature);
    }
  }
  return sets;
}

void SetIndex::ListAnew(Sets& sets, const LateType& type, Feature* first) {
  sets.features.clear();
  sets.areStale = false;
  for (Feature* feature = first; feature != nullptr; feature = feature->next) {
    if (feature->type == &type) sets.features.push_back(feature);
  }
}

}  // namespace standalone
