#include "analysis/Propagation.h"

#include <algorithm>

#include "analysis/Frame.h"

namespace standalone {
namespace {

const Key kPropagatedTo("PropagatedTo");

constexpr std::int32_t kMadeWhereItStands = 0;

}  // namespace

const Key kPropagationState("PropagationState");

void AddPropagationData(Feature& feature) {
  Document& document = *feature.document;
  if (document.FindAttribute(feature, kPropagationState.Id()) == nullptr) {
    static_cast<void>(WriteAttribute(feature, kPropagationState, kMadeWhereItStands));
  }
  if (document.FindAttribute(feature, kPropagatedTo.Id()) == nullptr) WriteLinks(feature, kPropagatedTo, {});
}

HRESULT PropagateToLaterSteps(Feature& feature) {
  if (feature.document->FindAttribute(feature, kPropagatedTo.Id()) == nullptr) return E_FAIL;
  std::vector<Feature*> steps;
  if (const Feature* const analysisCase = CaseAbove(feature)) steps = StepsOf(*analysisCase);
  const Feature* own = &feature;
  while (own != nullptr && !IsOfKind(*own, kind::kStep)) own = own->father;
  // The first step is the initial one, which every later step follows.
  const auto last = own == nullptr ? steps.begin() : std::ranges::find(steps, own);
  steps.erase(steps.begin(), last == steps.end() ? last : last + 1);
  std::erase_if(steps, [](const Feature* step) { return IsOfKind(*step, "HVXStaticLPStepLT"); });
  WriteLinks(feature, kPropagatedTo, steps);
  return S_OK;
}

}  // namespace standalone
