#pragma once

#include "analysis/VLMISamAnalysisCase.h"
#include "modeler/VLMISpecObject.h"

/// The steps of an analysis case.
class HVXStepUtils {
 public:
  HVXStepUtils() = delete;

  /// Gives the case's steps in order; the first is the initial step. Empty, with S_OK, when there are none.
  /// E_FAIL for a null case.
  static HRESULT GetAllSteps(VLMListValVLMBaseUnknown_var& steps,
                             const VLMISamAnalysisCase_var& analysisCase);

  /// Gives the step at `index`; positions start at 1. Null, and E_FAIL, for an index without a step.
  static HRESULT GetStepByIndex(const VLMISamAnalysisCase_var& analysisCase, int index,
                                VLMISpecObject_var& step);

  /// Gives the simulation history, the feature that holds the steps, of a case or of one of its steps. Null,
  /// and E_FAIL, when there is none.
  static HRESULT GetSimulationHistory(const VLMBaseUnknown_var& caseOrStep, VLMISpecObject_var& history);
};
