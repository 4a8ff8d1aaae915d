#pragma once

#include "base/VLMBaseUnknown.h"

/// The orientation of a material in a section.
class HVXIMatOrientation : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIMatOrientation"};

  /// Gives the angle as it is stored: in radians in current documents, in degrees in older ones. Stays as it
  /// is on failure.
  virtual HRESULT GetAngle(double& angle) = 0;
  virtual HRESULT SetAngle(double angle) = 0;
};
using HVXIMatOrientation_var = VLMHandle<HVXIMatOrientation>;
