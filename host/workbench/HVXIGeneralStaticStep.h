#pragma once

#include "modeler/VLMIKpeParm.h"

/// A general static step and its incrementation. Times are in seconds; the stabilization factor has no unit.
///
/// A value setter sets the value of the parameter that the step owns, E_FAIL while it owns none. A parameter
/// setter makes the step own `parameter` in place of the one before, E_FAIL for a null one.
class HVXIGeneralStaticStep : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIGeneralStaticStep"};

  /// The time that the step takes.
  virtual HRESULT SetTimePeriod(double value) = 0;
  /// The size of the first increment.
  virtual HRESULT SetInitialIncrement(double value) = 0;
  /// The largest size that an increment may grow to.
  virtual HRESULT SetMaximumIncrement(double value) = 0;
  /// The smallest size that an increment may shrink to before the solver gives up.
  virtual HRESULT SetMinimumIncrement(double value) = 0;
  /// The fraction of energy that automatic stabilization may dissipate.
  virtual HRESULT SetStabilizationFactor(double value) = 0;

  /// The parameter of the time period.
  virtual HRESULT SetTimePeriodParameter(const VLMIKpeParm_var& parameter) = 0;
  /// The parameter of the initial increment.
  virtual HRESULT SetInitialIncrementParameter(const VLMIKpeParm_var& parameter) = 0;
  /// The parameter of the maximum increment.
  virtual HRESULT SetMaximumIncrementParameter(const VLMIKpeParm_var& parameter) = 0;
  /// The parameter of the minimum increment.
  virtual HRESULT SetMinimumIncrementParameter(const VLMIKpeParm_var& parameter) = 0;
  /// The parameter of the stabilization factor.
  virtual HRESULT SetStabilizationFactorParameter(const VLMIKpeParm_var& parameter) = 0;
};
using HVXIGeneralStaticStep_var = VLMHandle<HVXIGeneralStaticStep>;
