#pragma once

#include "base/VLMBaseUnknown.h"

/// Propagates features: brings what a feature of one step means to the steps after it. Offered by the
/// component "HVXEFactoryExtForPropagation" and by the containers whose features are propagated.
class HVXIFactoryExtForPropagation : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIFactoryExtForPropagation"};

  /// Gives `feature` the propagation data that a new feature of its kind has. `option` is 0; `data`, which
  /// overrides the default, is null.
  virtual HRESULT SetDefaultPropagationData(const VLMBaseUnknown_var& feature, int option,
                                            const VLMBaseUnknown_var& data) = 0;

  /// Propagates `feature`. `option` is 0. E_FAIL for a feature without propagation data.
  virtual HRESULT Propagate(const VLMBaseUnknown_var& feature, int option) = 0;
};
using HVXIFactoryExtForPropagation_var = VLMHandle<HVXIFactoryExtForPropagation>;
