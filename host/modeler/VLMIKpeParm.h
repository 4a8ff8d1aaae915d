#pragma once

#include "base/VLMBaseUnknown.h"

/// The value object of a knowledge parameter.
class VLMIKpeValue : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIKpeValue"};

  /// Gives the value as a real, in the unit system's base unit of the parameter's magnitude.
  virtual HRESULT AsReal(double& value) = 0;
};
using VLMIKpeValue_var = VLMHandle<VLMIKpeValue>;

/// A knowledge parameter: a named value with a magnitude (unit kind) such as "Time", "DIMENSIONLESS" or
/// "TEMPRTRE".
class VLMIKpeParm : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIKpeParm"};

  virtual VLMUnicodeString GetName() = 0;
  virtual VLMUnicodeString GetMagnitude() = 0;

  /// The parameter's value object; null when it has no value or the call fails.
  virtual VLMIKpeValue_var GetValue() = 0;
};
using VLMIKpeParm_var = VLMHandle<VLMIKpeParm>;
