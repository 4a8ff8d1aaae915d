#pragma once

#include "base/VLMBaseUnknown.h"

/// A heat flux: concentrated, on surfaces or in bodies.
class HVXIHeatFlux : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIHeatFlux"};

  /// Sets the flux, in the base unit of its kind. E_FAIL while the flux has no current basic components.
  virtual HRESULT SetMagnitude(double magnitude) = 0;
  virtual HRESULT GetMagnitude(double& magnitude) = 0;
};
using HVXIHeatFlux_var = VLMHandle<HVXIHeatFlux>;
