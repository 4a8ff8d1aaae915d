#pragma once

#include "base/VLMBaseUnknown.h"

/// An analysis case of this workbench.
class HVXIAnalysisCase : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIAnalysisCase"};

  /// Gives the type of analysis: 1 nonlinear structural, 2 thermal, 3 explicit dynamics.
  virtual HRESULT GetAnalysisType(std::int32_t& type) = 0;

  /// Gives the kind of case: 1 for a case that can keep interactions in its steps, 0 for one whose
  /// interactions all stand in the case's own interaction set.
  virtual HRESULT GetCaseKind(std::int32_t& kind) = 0;

  /// Gives the analysis sets beneath the case, those of its steps included, in document order; each can be
  /// walked with `HVXITraverser`. Empty, with S_OK, when there are none.
  virtual HRESULT ListSets(VLMListValVLMBaseUnknown_var& sets) = 0;
};
using HVXIAnalysisCase_var = VLMHandle<HVXIAnalysisCase>;
