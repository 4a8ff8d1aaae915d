#pragma once

#include "base/VLMBaseUnknown.h"

/// A feature's external name: the name shown to the user.
class VLMIAlias : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIAlias"};

  /// Empty, with S_OK, when the feature has no external name.
  virtual HRESULT GetExternalName(VLMUnicodeString& name) = 0;
  virtual HRESULT SetExternalName(const VLMUnicodeString& name) = 0;
};
using VLMIAlias_var = VLMHandle<VLMIAlias>;
