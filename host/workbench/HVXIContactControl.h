#pragma once

#include "base/VLMBaseUnknown.h"

/// The contact control of a contact: how the solver treats its tolerances.
class HVXIContactControl : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIContactControl"};

  /// Sets the overclosure-tolerance mode: 0 automatic, 1 given by the contact, 2 the solver's own.
  virtual HRESULT SetOverclosureToleranceMode(std::int32_t mode) = 0;
  virtual HRESULT GetOverclosureToleranceMode(std::int32_t& mode) = 0;
};
using HVXIContactControl_var = VLMHandle<HVXIContactControl>;
