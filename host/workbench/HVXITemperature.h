#pragma once

#include "base/VLMBaseUnknown.h"

/// A prescribed temperature: boundary condition, initial temperature or temperature history.
class HVXITemperature : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXITemperature"};

  /// Sets the temperature in kelvins. E_FAIL while the condition has no current basic components.
  virtual HRESULT SetMagnitude(double magnitude) = 0;
  virtual HRESULT GetMagnitude(double& magnitude) = 0;
};
using HVXITemperature_var = VLMHandle<HVXITemperature>;
