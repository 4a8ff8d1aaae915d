#pragma once

#include "base/VLMBaseUnknown.h"

/// A shell section.
class HVXIShellSection : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIShellSection"};

  /// Gives the material orientation, to be cast to `HVXIMatOrientation`; null, with S_OK, when there is none.
  virtual HRESULT GetMatOrientation(VLMBaseUnknown_var& orientation) = 0;
};
using HVXIShellSection_var = VLMHandle<HVXIShellSection>;
