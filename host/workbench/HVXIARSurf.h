#pragma once

#include "base/VLMBaseUnknown.h"

/// An analytical rigid surface.
class HVXIARSurf : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIARSurf"};

  /// Gives the surface's mesh part, to be cast to `VLMIMSHMeshPart`; null, with S_OK, when there is none.
  virtual HRESULT GetMeshPart(VLMBaseUnknown_var& meshPart) = 0;
};
using HVXIARSurf_var = VLMHandle<HVXIARSurf>;
