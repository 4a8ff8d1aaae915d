#pragma once

#include "base/VLMBaseUnknown.h"

/// An initial temperature's own settings; its temperature is set through `HVXITemperature`.
class HVXIInitialTemperature : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIInitialTemperature"};

  /// Sets whether the temperature of midside nodes is interpolated from the corner nodes: 1 yes, 0 no.
  virtual HRESULT SetMidside(unsigned char flag) = 0;
};
using HVXIInitialTemperature_var = VLMHandle<HVXIInitialTemperature>;
