#pragma once

#include "modeler/VLMISpecObject.h"

/// Makes field output requests. Offered by the containers that hold them.
class HVXIFieldOutputFact : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIFieldOutputFact"};

  /// Creates a field output request as the last member of the container. Null, and E_FAIL, when it cannot be
  /// made.
  virtual HRESULT CreateFieldOutputRequest(VLMISpecObject_var& request) = 0;
};
using HVXIFieldOutputFact_var = VLMHandle<HVXIFieldOutputFact>;
