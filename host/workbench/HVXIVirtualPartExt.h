#pragma once

#include "base/VLMBaseUnknown.h"

/// A virtual part: carries the properties of a connection where there is no geometry to carry them. Tells
/// virtual parts apart from other members of a property set.
class HVXIVirtualPartExt : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIVirtualPartExt"};
};
using HVXIVirtualPartExt_var = VLMHandle<HVXIVirtualPartExt>;
