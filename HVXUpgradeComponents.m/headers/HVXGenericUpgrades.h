#pragma once

#include "modeler/VLMISpecObject.h"

/// The conversions of a whole document.
class __attribute__((visibility("default"))) HVXGenericUpgrades {
 public:
  HVXGenericUpgrades() = delete;

  /// Runs the conversion that `identifiers` names on the document's features. Acts only on a list of exactly
  /// one identifier: E_FAIL for an empty list, 0 without doing anything for a longer one or an identifier
  /// that is none of its own; else the conversion's code when negative, and 0.
  static HRESULT Upgtade(const VLMListValVLMUnicodeString& identifiers,
                         const VLMListValVLMISpecObject_var& features);

 private:
  static HRESULT RemoveConsistencyCheckAttributes(const VLMListValVLMISpecObject_var& features);
};
