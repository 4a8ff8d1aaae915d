#pragma once

#include "base/VLMBaseUnknown.h"

/// The mesh part of an interaction, such as a coupling.
class HVXIInteractionMeshPart : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIInteractionMeshPart"};

  /// Sets the exclusion regions that the mesh leaves out, in place of those before.
  virtual HRESULT SetExclusionRegions(const VLMListValVLMBaseUnknown_var& regions) = 0;

  /// Gives them, in order. Empty, with S_OK, when there are none.
  virtual HRESULT GetExclusionRegions(VLMListValVLMBaseUnknown_var& regions) = 0;
};
using HVXIInteractionMeshPart_var = VLMHandle<HVXIInteractionMeshPart>;
