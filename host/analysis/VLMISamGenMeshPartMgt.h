#pragma once

#include "base/VLMBaseUnknown.h"

/// A feature, such as a virtual part, that manages mesh parts of its own.
class VLMISamGenMeshPartMgt : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamGenMeshPartMgt"};

  /// Gives the mesh parts, in order. With `option` 1 those that exist already; none is generated for the
  /// listing. Empty, with S_OK, when there are none.
  virtual HRESULT ListMeshParts(int option, VLMListValVLMBaseUnknown_var& meshParts) = 0;
};
using VLMISamGenMeshPartMgt_var = VLMHandle<VLMISamGenMeshPartMgt>;
