#pragma once

#include "base/VLMBaseUnknown.h"

/// The initial step: the first of a case, which holds what is there before anything is loaded.
class HVXIInitialStep : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIInitialStep"};
};
using HVXIInitialStep_var = VLMHandle<HVXIInitialStep>;
