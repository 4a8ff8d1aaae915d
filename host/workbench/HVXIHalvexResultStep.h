#pragma once

#include "base/VLMBaseUnknown.h"

/// The solution of one analysis step.
class HVXIHalvexResultStep : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIHalvexResultStep"};

  /// Gives the code of the step's type of result; 3 stands for thermal results.
  virtual HRESULT GetResultStepType(std::int32_t& type) = 0;
};
using HVXIHalvexResultStep_var = VLMHandle<HVXIHalvexResultStep>;
