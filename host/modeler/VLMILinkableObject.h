#pragma once

#include "modeler/VLMDocument.h"

/// An object that others can link to: every feature that stands in a document.
class VLMILinkableObject : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMILinkableObject"};

  /// Gives the document that holds the object.
  virtual HRESULT GetDocument(VLMDocument_var& document) = 0;
};
using VLMILinkableObject_var = VLMHandle<VLMILinkableObject>;
