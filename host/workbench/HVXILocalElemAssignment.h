#pragma once

#include "base/VLMBaseUnknown.h"

/// A local element assignment: overrides the global one for a part of the model.
class HVXILocalElemAssignment : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXILocalElemAssignment"};

  /// Gives the element assignments, in order, each to be cast to `HVXIElementAssignment`. Empty, with S_OK,
  /// when there are none.
  virtual HRESULT GetElementAssignments(VLMListValVLMBaseUnknown_var& assignments) = 0;

  /// Sets the whole list, in place of the one before; a null entry holds nothing. Features that are no longer
  /// listed stay in the document, but for those that a listed one is a copy of. E_FAIL, and the list stays as
  /// it is, when an entry cannot be listed.
  virtual HRESULT SetElementAssignments(const VLMListValVLMBaseUnknown_var& assignments) = 0;
};
using HVXILocalElemAssignment_var = VLMHandle<HVXILocalElemAssignment>;
