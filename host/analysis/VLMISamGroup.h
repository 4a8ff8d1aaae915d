#pragma once

#include "base/VLMBaseUnknown.h"

/// A group: geometry or mesh gathered under one name, so that features can rest on it. Tells groups apart
/// from other objects; what a group holds is told by `HVXISamGroupExt`.
class VLMISamGroup : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamGroup"};
};
using VLMISamGroup_var = VLMHandle<VLMISamGroup>;
