#pragma once

#include "base/VLMBaseUnknown.h"

/// A boundary condition on motion: displacement, velocity or acceleration. Degrees of freedom run from 1 to
/// 6: 1 to 3 translational, 4 to 6 rotational (radians). Any other one, or a condition whose value is not
/// stored yet, gives E_FAIL; an out argument then stays as it is.
class HVXIMotionBC : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIMotionBC"};

  virtual HRESULT GetValue(int degreeOfFreedom, double& value) = 0;
  virtual HRESULT SetValue(int degreeOfFreedom, double value) = 0;

  /// 1 when the degree of freedom is prescribed, 0 when it is free.
  virtual HRESULT GetActivity(int degreeOfFreedom, unsigned char& active) = 0;
  /// A number other than 0 prescribes the degree of freedom.
  virtual HRESULT SetActivity(int degreeOfFreedom, unsigned char active) = 0;
};
using HVXIMotionBC_var = VLMHandle<HVXIMotionBC>;
