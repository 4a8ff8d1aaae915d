#include "analysis/Propagation.h"

#include "analysis/Frame.h"

namespace standalone {
namespace {

const Key kPropagatedTo("PropagatedTo");

}  // namespace

const Key kPropagationState("PropagationState");

void GiveDefaultPropagationData(Feature& feature) {
  Document& document = *feature.document;
  if (document.FindAttribute(feature, kPropagationState.Id()) == nullptr) {
    document.SetAttribute(feature, kPropagationState.Id(), Value::Integer(kCreatedHere));
  }
  if (document.FindAttribute(feature, kPropagatedTo.Id()) == nullptr) WriteLinks(feature, kPropagatedTo, {});
}

HRESULT PropagateToLaterSteps(Feature& feature) {
  if (feature.document->FindAttribute(feature, kPropagatedTo.Id()) == nullptr) return E_FAIL;
  if (!CanHoldList(feature, kPropagatedTo)) return E_FAIL;
  const Feature* const analysisCase = CaseAbove(feature);
  std::vector<Feature*> steps;
  if (analysisCase != nullptr) steps = StepsOf(*analysisCase);
  std::size_t own = 0;  // the initial step, for a feature that stands beneath none
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (StandsBeneath(feature, *steps[i])) own = i;
  }
  std::vector<Feature*> reached;
  for (std::size_t i = own + 1; i < steps.size(); ++i) {
    if (!IsOfKind(*steps[i], "HVXStaticLPStepLT")) reached.push_back(steps[i]);
  }
  WriteLinks(feature, kPropagatedTo, reached);
  return S_OK;
}

}  // namespace standalone
