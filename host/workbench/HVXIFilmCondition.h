#pragma once

#include "base/VLMBaseUnknown.h"

/// A film condition: heat exchange with a surrounding medium.
class HVXIFilmCondition : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIFilmCondition"};

  /// Sets the temperature of the medium, in kelvins. E_FAIL while the condition has no current basic
  /// components.
  virtual HRESULT SetReferenceTemperature(double temperature) = 0;
  virtual HRESULT GetReferenceTemperature(double& temperature) = 0;
};
using HVXIFilmCondition_var = VLMHandle<HVXIFilmCondition>;
