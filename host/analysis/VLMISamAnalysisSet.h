#pragma once

#include "base/VLMBaseUnknown.h"

/// An analysis set: an ordered collection of features of a case, step or document, such as the loads of a
/// step or the mesh parts of a document. Its members are its direct children.
class VLMISamAnalysisSet : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamAnalysisSet"};

  /// Gives, in the set's order, the members whose late type is `lateType` or derives from it. Empty, with
  /// S_OK, when there are none.
  virtual HRESULT ListMembersOfLateType(const VLMUnicodeString& lateType,
                                        VLMListValVLMBaseUnknown_var& members) = 0;

  /// Gives, in the set's order, the members that offer interface `id`. `option` is 0. Empty, with S_OK, when
  /// there are none.
  virtual HRESULT ListMembersOffering(const VLMInterfaceId& id, int option,
                                      VLMListValVLMBaseUnknown_var& members) = 0;

  /// Takes `member` out of the set and deletes it with all that stands beneath it. `option` is 0. E_FAIL when
  /// it is not a member.
  virtual HRESULT RemoveMember(const VLMBaseUnknown_var& member, int option) = 0;
};
using VLMISamAnalysisSet_var = VLMHandle<VLMISamAnalysisSet>;
