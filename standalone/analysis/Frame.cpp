#include "analysis/Frame.h"

#include "analysis/CaseMemo.h"
#include "model/Document.h"

namespace standalone {

bool IsOfKind(const Feature& feature, std::string_view lateTypeOrKind) {
  return feature.type->MetaClass().IsAKindOf(lateTypeOrKind);
}

bool StandsBeneath(const Feature& feature, const Feature& top) {
  const Feature* above = &feature;
  while (above != nullptr && above != &top) above = above->father;
  return above != nullptr;
}

Feature* CaseAbove(Feature& feature) {
  if (CaseMemo* const memo = CaseMemo::Current()) return memo->CaseAbove(feature);
  Feature* above = &feature;
  while (above != nullptr && !IsOfKind(*above, kind::kAnalysisCase)) above = above->father;
  return above;
}

Feature* FirstSonOfKind(const Feature& father, std::string_view lateTypeOrKind) {
  Feature* son = father.firstSon;
  while (son != nullptr && !IsOfKind(*son, lateTypeOrKind)) son = son->nextSibling;
  return son;
}

const std::vector<Feature*>& SonsOfKind(Feature& father, std::string_view lateTypeOrKind) {
  const auto list = [&father](const auto& isOfKind) {
    std::vector<Feature*> found;
    for (Feature* son = father.firstSon; son != nullptr; son = son->nextSibling) {
      if (isOfKind(*son)) found.push_back(son);
    }
    return found;
  };
  return father.document->Listed().Of({father, lateTypeOrKind, Listings::kSons}, list);
}

std::vector<Feature*> StepsOf(const Feature& analysisCase) {
  std::vector<Feature*> steps;
  const Feature* const history = FirstSonOfKind(analysisCase, "HVXSimulationHistoryLT");
  if (history == nullptr) return steps;
  for (Feature* son = history->firstSon; son != nullptr; son = son->nextSibling) {
    if (IsOfKind(*son, kind::kStep)) steps.push_back(son);
  }
  return steps;
}

}  // namespace standalone
