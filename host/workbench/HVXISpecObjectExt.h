#pragma once

#include "analysis/VLMISamBasicComponent.h"

/// A feature's basic components as the workbench reaches them on features such as properties. A component is
/// taken out as a son of the feature (`VLMISpecObject::RemoveSon`).
class HVXISpecObjectExt : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXISpecObjectExt"};

  /// Gives the first basic component called `name`; null, and E_FAIL, when there is none.
  virtual HRESULT GetBasicComponent(const VLMString& name, VLMISamBasicComponent_var& component) = 0;
};
using HVXISpecObjectExt_var = VLMHandle<HVXISpecObjectExt>;
