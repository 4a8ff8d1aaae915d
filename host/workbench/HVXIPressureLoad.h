#pragma once

#include "base/VLMBaseUnknown.h"

/// A pressure on surfaces.
class HVXIPressureLoad : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIPressureLoad"};

  /// Sets the pressure, in pascals, positive when it pushes on the surface. E_FAIL while the load has no
  /// current basic components.
  virtual HRESULT SetMagnitude(const double& magnitude) = 0;
  virtual HRESULT GetMagnitude(double& magnitude) = 0;
};
using HVXIPressureLoad_var = VLMHandle<HVXIPressureLoad>;
