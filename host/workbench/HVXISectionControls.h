#pragma once

#include "base/VLMBaseUnknown.h"

/// Section controls: how the solver controls elements that distort. Each value stands in the attribute that
/// its comment names. A getter that fails leaves the out argument as it is.
class HVXISectionControls : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXISectionControls"};

  /// "DistortionContol": the code of the distortion control.
  virtual HRESULT GetDistortionControl(std::int32_t& code) = 0;
  virtual HRESULT SetDistortionControl(std::int32_t code) = 0;

  /// "SecondOrderAccuracy": 1 on, 0 off.
  virtual HRESULT GetSecondOrderAccuracy(unsigned char& flag) = 0;
  virtual HRESULT SetSecondOrderAccuracy(unsigned char flag) = 0;

  /// "HourglassControl": the code of the hourglass control.
  virtual HRESULT GetHourglassControl(std::int32_t& code) = 0;
  virtual HRESULT SetHourglassControl(std::int32_t code) = 0;

  /// "LengthRatio": the ratio of lengths at which distortion control sets in.
  virtual HRESULT GetLengthRatio(double& ratio) = 0;
  virtual HRESULT SetLengthRatio(double ratio) = 0;

  /// "StiffnessViscousWtFactor": the weight between stiffness and viscous hourglass control.
  virtual HRESULT GetStiffnessViscousWtFactor(double& factor) = 0;
  virtual HRESULT SetStiffnessViscousWtFactor(double factor) = 0;

  /// "DispHourglassScalingFactor": for displacements.
  virtual HRESULT GetDispHourglassScalingFactor(double& factor) = 0;
  virtual HRESULT SetDispHourglassScalingFactor(double factor) = 0;

  /// "RotHourglassScalingFactor": for rotations.
  virtual HRESULT GetRotHourglassScalingFactor(double& factor) = 0;
  virtual HRESULT SetRotHourglassScalingFactor(double factor) = 0;

  /// "OutOfPlaneHourglassScalingFactor": for displacements out of the plane.
  virtual HRESULT GetOutOfPlaneHourglassScalingFactor(double& factor) = 0;
  virtual HRESULT SetOutOfPlaneHourglassScalingFactor(double factor) = 0;
};
using HVXISectionControls_var = VLMHandle<HVXISectionControls>;
