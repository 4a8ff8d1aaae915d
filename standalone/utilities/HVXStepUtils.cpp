#include "workbench/HVXStepUtils.h"

#include "adapters/FeatureAdapter.h"
#include "analysis/Frame.h"

using namespace standalone;

HRESULT HVXStepUtils::GetAllSteps(VLMListValVLMBaseUnknown_var& steps,
                                  const VLMISamAnalysisCase_var& analysisCase) {
  steps.RemoveAll();
  const Feature* const own = FeatureOf(analysisCase);
  if (const HRESULT entered = Checkpoint::Pass("HVXStepUtils::GetAllSteps", own); Failed(entered))
    return entered;
  if (own == nullptr || own->removed) return E_FAIL;
  for (Feature* const step : StepsOf(*own)) steps.Append(HandleOn<VLMBaseUnknown>(step));
  return S_OK;
}

HRESULT HVXStepUtils::GetStepByIndex(const VLMISamAnalysisCase_var& analysisCase, int index,
                                     VLMISpecObject_var& step) {
  step = NULL_var;
  const Feature* const own = FeatureOf(analysisCase);
  if (const HRESULT entered = Checkpoint::Pass("HVXStepUtils::GetStepByIndex", own); Failed(entered))
    return entered;
  if (own == nullptr || own->removed || index < 1) return E_FAIL;
  const std::vector<Feature*> steps = StepsOf(*own);
  if (static_cast<std::size_t>(index) > steps.size()) return E_FAIL;
  step = HandleOn<VLMISpecObject>(steps[static_cast<std::size_t>(index) - 1]);
  return S_OK;
}

HRESULT HVXStepUtils::GetSimulationHistory(const VLMBaseUnknown_var& caseOrStep,
                                           VLMISpecObject_var& history) {
  history = NULL_var;
  Feature* const own = FeatureOf(caseOrStep);
  if (const HRESULT entered = Checkpoint::Pass("HVXStepUtils::GetSimulationHistory", own); Failed(entered)) {
    return entered;
  }
  Feature* const analysisCase = own == nullptr || own->removed ? nullptr : CaseAbove(*own);
  if (analysisCase == nullptr) return E_FAIL;
  history = HandleOn<VLMISpecObject>(FirstSonOfKind(*analysisCase, "HVXSimulationHistoryLT"));
  return history == NULL_var ? E_FAIL : S_OK;
}
