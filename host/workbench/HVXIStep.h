#pragma once

#include "base/VLMBaseUnknown.h"

/// An analysis step of any kind. Tells steps apart from other features; what stands beneath a step is found
/// by `VLMISamAnalysisScan`.
class HVXIStep : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIStep"};
};
using HVXIStep_var = VLMHandle<HVXIStep>;
