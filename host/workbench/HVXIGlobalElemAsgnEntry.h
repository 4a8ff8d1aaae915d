#pragma once

#include "base/VLMBaseUnknown.h"

/// An entry of a global element assignment: the element assignments for one type of analysis.
class HVXIGlobalElemAsgnEntry : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIGlobalElemAsgnEntry"};

  /// Gives the entry's kind: the type of analysis that it is for (`HVXIAnalysisCase::GetAnalysisType`). Stays
  /// as it is on failure.
  virtual HRESULT GetKind(std::int32_t& kind) = 0;

  /// Gives the element assignments, in order, each to be cast to `HVXIElementAssignment`. Empty, with S_OK,
  /// when there are none.
  virtual HRESULT GetElementAssignments(VLMListValVLMBaseUnknown_var& assignments) = 0;

  /// Sets the whole list, in place of the one before; a null entry holds nothing. Features that are no longer
  /// listed stay in the document, but for those that a listed one is a copy of. E_FAIL, and the list stays as
  /// it is, when an entry cannot be listed.
  virtual HRESULT SetElementAssignments(const VLMListValVLMBaseUnknown_var& assignments) = 0;
};
using HVXIGlobalElemAsgnEntry_var = VLMHandle<HVXIGlobalElemAsgnEntry>;
