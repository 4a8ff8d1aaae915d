#pragma once

#include "base/VLMBaseUnknown.h"

class VLMISamExplicit;
using VLMISamExplicit_var = VLMHandle<VLMISamExplicit>;

/// A feature's explicit (meshed) counterpart.
class VLMISamExplicit : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamExplicit"};

  /// Attaches the explicit counterpart `other` to this one, in place of the one attached before. E_FAIL for a
  /// null one.
  virtual HRESULT Attach(const VLMISamExplicit_var& other) = 0;

  /// Gives the attached counterpart; null, with S_OK, when there is none.
  virtual HRESULT GetAttached(VLMISamExplicit_var& other) = 0;
};
