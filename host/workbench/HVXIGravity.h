#pragma once

#include <array>

#include "base/VLMBaseUnknown.h"

/// A gravity load.
class HVXIGravity : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIGravity"};

  /// Sets the acceleration's three components. E_FAIL, and none is set, while the load has no current basic
  /// components.
  virtual HRESULT SetComponents(const std::array<double, 3>& components) = 0;
  virtual HRESULT GetComponents(std::array<double, 3>& components) = 0;
};
using HVXIGravity_var = VLMHandle<HVXIGravity>;
