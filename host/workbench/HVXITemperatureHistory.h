#pragma once

#include "base/VLMBaseUnknown.h"

/// A temperature history's own settings; its temperature is set through `HVXITemperature`.
class HVXITemperatureHistory : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXITemperatureHistory"};

  /// Sets whether the temperature of midside nodes is interpolated from the corner nodes: 1 yes, 0 no.
  virtual HRESULT SetMidside(unsigned char flag) = 0;

  /// Sets the last increment that temperatures are read up to; 0 reads to the end. `increment` is read and,
  /// where the history corrects it, written.
  virtual HRESULT SetEndIncrement(std::int32_t& increment) = 0;
};
using HVXITemperatureHistory_var = VLMHandle<HVXITemperatureHistory>;
