#pragma once

#include "analysis/VLMISamBasicComponent.h"

/// A contact pair of either solver variant. `HVXIContactConnectionEnhancementStd` and
/// `HVXIContactConnectionEnhancementExplicit` add what is each variant's own.
class HVXIContactConnectionEnhancement : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIContactConnectionEnhancement"};

  /// Gives the basic component that holds the contact's named settings, such as "SurfaceSmoothing"; null,
  /// with S_OK, when the contact has none.
  virtual HRESULT GetBasicComponentHolder(VLMISamBasicComponent_var& holder) = 0;
};
using HVXIContactConnectionEnhancement_var = VLMHandle<HVXIContactConnectionEnhancement>;
