#pragma once

#include "modeler/VLMDocument.h"

/// What the preprocessing workbenches keep in an analysis document.
class HVXAnalPreProcEntityUtils {
 public:
  HVXAnalPreProcEntityUtils() = delete;

  /// Gives the property features of the document, connection properties among them, in document order. Empty,
  /// with S_OK, when there are none. E_FAIL for a null document.
  static HRESULT GetListOfPropFromAnalDoc(const VLMDocument_var& document,
                                          VLMListValVLMBaseUnknown_var& properties);
};
