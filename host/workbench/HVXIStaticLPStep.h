#pragma once

#include "base/VLMBaseUnknown.h"

/// A static perturbation step: a linear response about the state that the step before it ended in. It brings
/// in no interactions of its own.
class HVXIStaticLPStep : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIStaticLPStep"};
};
using HVXIStaticLPStep_var = VLMHandle<HVXIStaticLPStep>;
