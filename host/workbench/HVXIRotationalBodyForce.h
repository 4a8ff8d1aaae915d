#pragma once

#include "modeler/VLMILinkableObject.h"
#include "modeler/VLMISpecObject.h"

/// A body force from rotation about an axis.
class HVXIRotationalBodyForce : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIRotationalBodyForce"};

  /// Sets the angular velocity, in radians per second. E_FAIL while the force has no current basic
  /// components.
  virtual HRESULT SetAngularVelocity(double velocity) = 0;
  /// Sets the angular acceleration, in radians per second squared. E_FAIL as for the velocity.
  virtual HRESULT SetAngularAcceleration(double acceleration) = 0;

  /// Gives the axis (a line, an edge or an axis system); null, with S_OK, when none was chosen.
  virtual HRESULT GetAxis(VLMILinkableObject_var& axis) = 0;

  /// Sets the axis together with the part that it belongs to, which may be null. E_FAIL for a null axis.
  virtual HRESULT SetAxisData(const VLMILinkableObject_var& axis, const VLMISpecObject_var& part) = 0;
};
using HVXIRotationalBodyForce_var = VLMHandle<HVXIRotationalBodyForce>;
