#pragma once

#include "modeler/VLMISpecObject.h"

/// The version manager, as upgrade extensions see it.
class HVXUpgradeManager {
 public:
  HVXUpgradeManager() = delete;

  /// Hands over features that are to be propagated (brought up to date) once the upgrade at work has been
  /// through the whole document. Each is propagated once, however often it is handed over meanwhile; null
  /// entries are left out. E_FAIL when no document is being upgraded.
  static HRESULT AppendInListOfFeatures(const VLMListValVLMISpecObject_var& features);
};
