#pragma once

#include "base/VLMBaseUnknown.h"

/// A spring or damper between points.
class HVXISpring : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXISpring"};

  /// Gives the mesh part, to be cast to `VLMIMSHMeshPart`; null, with S_OK, when there is none.
  virtual HRESULT GetMeshPart(VLMBaseUnknown_var& meshPart) = 0;

  /// The number of connection designs; 0 when the call fails.
  virtual int GetConnectionDesignCount() = 0;

  /// Gives the connection design at `index`, to be cast to `HVXISamAnalysisConnectionDesign`; positions start
  /// at 1. Null, and E_FAIL, for an index without a design.
  virtual HRESULT GetConnectionDesign(int index, VLMBaseUnknown_var& design) = 0;
};
using HVXISpring_var = VLMHandle<HVXISpring>;
