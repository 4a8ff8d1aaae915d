#pragma once

#include "modeler/VLMISpecObject.h"

/// The solution of an analysis case.
class HVXIAnalysisCaseSolution : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIAnalysisCaseSolution"};

  /// Links the solution to the case that it is the solution of. E_FAIL for a null case.
  virtual HRESULT SetAnalysisCase(const VLMISpecObject_var& analysisCase) = 0;

  /// Gives that case; null, with S_OK, when the solution is linked to none.
  virtual HRESULT GetAnalysisCase(VLMISpecObject_var& analysisCase) = 0;
};
using HVXIAnalysisCaseSolution_var = VLMHandle<HVXIAnalysisCaseSolution>;
