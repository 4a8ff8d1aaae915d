#pragma once

#include "base/VLMBaseUnknown.h"

/// A rigid body constraint: its supports (`VLMISamAnalysisSupport`) move as one rigid body.
class HVXIRigidBodyConstraint : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIRigidBodyConstraint"};

  /// Gives the connection mesh part, to be cast to `VLMIMSHMeshPart`; null, with S_OK, when there is none.
  virtual HRESULT GetMeshPart(VLMBaseUnknown_var& meshPart) = 0;

  /// Creates the connection mesh part, without supports. E_FAIL when the constraint has one.
  virtual HRESULT CreateMeshPart() = 0;

  /// Gives the connector of the reference point, to be cast to `VLMISamAnalysisConnector`; null, with S_OK,
  /// when the constraint has no reference.
  virtual HRESULT GetReferenceConnector(VLMBaseUnknown_var& connector) = 0;

  /// Sets where the reference is: 1 at the centre of mass, 0 at the reference point.
  virtual HRESULT SetCenterOfMass(std::int32_t centerOfMass) = 0;
  virtual HRESULT GetCenterOfMass(std::int32_t& centerOfMass) = 0;
};
using HVXIRigidBodyConstraint_var = VLMHandle<HVXIRigidBodyConstraint>;
