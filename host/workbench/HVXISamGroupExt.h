#pragma once

#include "base/VLMBaseUnknown.h"

/// What a group holds.
class HVXISamGroupExt : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXISamGroupExt"};

  /// Gives the kind of group: 1 for one whose members are supports, 0 for one that holds mesh. Stays as it is
  /// on failure.
  virtual HRESULT GetKind(std::int32_t& kind) = 0;

  /// 1 when the group is defined on a mesh part, 0 when not or when the call fails.
  virtual unsigned char IsDefinedOnMeshPart() = 0;

  /// Gives the members, in order, each to be cast to `VLMISamAnalysisConnector`. Empty, with S_OK, when there
  /// are none.
  virtual HRESULT ListMembers(VLMListValVLMBaseUnknown_var& members) = 0;
};
using HVXISamGroupExt_var = VLMHandle<HVXISamGroupExt>;
