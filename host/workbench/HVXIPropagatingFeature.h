#pragma once

#include "base/VLMBaseUnknown.h"

/// A feature that is propagated from step to step.
class HVXIPropagatingFeature : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIPropagatingFeature"};

  /// 0 for a feature that was created where it stands, whether or not it was propagated from there; 1 for one
  /// that propagation brought; negative when the call fails.
  virtual HRESULT GetPropagationState() = 0;
};
using HVXIPropagatingFeature_var = VLMHandle<HVXIPropagatingFeature>;
