#pragma once

#include "base/VLMBaseUnknown.h"

/// A tie between two faces. Tells ties apart from other features; its connection property stands in its
/// attribute "connectionProperty", its supports are seen through `VLMISamAnalysisSupport`.
class HVXITiedContact : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXITiedContact"};
};
using HVXITiedContact_var = VLMHandle<HVXITiedContact>;
