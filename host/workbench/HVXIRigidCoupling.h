#pragma once

#include "base/VLMBaseUnknown.h"

/// A rigid or smooth coupling: ties its supports (`VLMISamAnalysisSupport`) to a reference.
class HVXIRigidCoupling : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIRigidCoupling"};

  /// Gives the connection mesh part, to be cast to `VLMIMSHMeshPart` and `HVXIInteractionMeshPart`; null,
  /// with S_OK, when there is none.
  virtual HRESULT GetMeshPart(VLMBaseUnknown_var& meshPart) = 0;

  /// Creates the connection mesh part, without supports. E_FAIL when the coupling has one.
  virtual HRESULT CreateMeshPart() = 0;

  /// Gives the exclusion regions, the parts of its supports that the coupling leaves out, in order; each is
  /// to be cast to `VLMISamAnalysisConnector`. Empty, with S_OK, when there are none.
  virtual HRESULT GetExclusionRegions(VLMListValVLMBaseUnknown_var& regions) = 0;

  /// Sets the exclusion regions, in place of those before.
  virtual HRESULT SetExclusionRegions(const VLMListValVLMBaseUnknown_var& regions) = 0;
};
using HVXIRigidCoupling_var = VLMHandle<HVXIRigidCoupling>;
