#pragma once

#include "workbench/HVXIContactConnectionEnhancement.h"

/// A contact pair for explicit dynamics.
class HVXIContactConnectionEnhancementExplicit : public HVXIContactConnectionEnhancement {
 public:
  static constexpr VLMInterfaceId kId{"HVXIContactConnectionEnhancementExplicit"};

  /// Gives the contact control; null, with S_OK, when the contact has none.
  virtual HRESULT GetContactControl(VLMBaseUnknown_var& control) = 0;
};
using HVXIContactConnectionEnhancementExplicit_var = VLMHandle<HVXIContactConnectionEnhancementExplicit>;
