#pragma once

#include "base/VLMBaseUnknown.h"

/// A gasket property.
class HVXIGasketSection : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIGasketSection"};

  /// Sets the stabilization stiffness, in its magnitude's base unit.
  virtual HRESULT SetStabilizationStiffness(double stiffness) = 0;
  virtual HRESULT GetStabilizationStiffness(double& stiffness) = 0;
};
using HVXIGasketSection_var = VLMHandle<HVXIGasketSection>;
