#pragma once

#include "modeler/VLMIKpeParm.h"

/// A heat transfer step and its incrementation. Times are in seconds, temperature changes in kelvins.
///
/// A value setter sets the value of the parameter that the step owns, E_FAIL while it owns none. A parameter
/// setter makes the step own `parameter` in place of the one before, E_FAIL for a null one.
class HVXIHeatTransferStep : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIHeatTransferStep"};

  /// The time that the step takes.
  virtual HRESULT SetTimePeriod(double value) = 0;
  /// The size of the first increment.
  virtual HRESULT SetInitialIncrement(double value) = 0;
  /// The largest size that an increment may grow to.
  virtual HRESULT SetMaximumIncrement(double value) = 0;
  /// The smallest size that an increment may shrink to before the solver gives up.
  virtual HRESULT SetMinimumIncrement(double value) = 0;
  /// The temperature change below which the step ends as steady.
  virtual HRESULT SetMinimumTemperatureChange(double value) = 0;
  /// The largest temperature change within one increment.
  virtual HRESULT SetMaximumTemperatureChange(double value) = 0;

  /// The parameter of the time period.
  virtual HRESULT SetTimePeriodParameter(const VLMIKpeParm_var& parameter) = 0;
  /// The parameter of the initial increment.
  virtual HRESULT SetInitialIncrementParameter(const VLMIKpeParm_var& parameter) = 0;
  /// The parameter of the maximum increment.
  virtual HRESULT SetMaximumIncrementParameter(const VLMIKpeParm_var& parameter) = 0;
  /// The parameter of the minimum increment.
  virtual HRESULT SetMinimumIncrementParameter(const VLMIKpeParm_var& parameter) = 0;
  /// The parameter of the minimum temperature change.
  virtual HRESULT SetMinimumTemperatureChangeParameter(const VLMIKpeParm_var& parameter) = 0;
  /// The parameter of the maximum temperature change.
  virtual HRESULT SetMaximumTemperatureChangeParameter(const VLMIKpeParm_var& parameter) = 0;
};
using HVXIHeatTransferStep_var = VLMHandle<HVXIHeatTransferStep>;
