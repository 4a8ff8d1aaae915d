#pragma once

#include "modeler/VLMDocument.h"
#include "modeler/VLMISpecObject.h"

/// A container: what holds the features of one model of a document.
class VLMIContainer : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIContainer"};

  /// The number of features that stand in the container.
  virtual int GetSize() = 0;
};

/// A container's view of the document that it belongs to.
class VLMIContainerOfDocument : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIContainerOfDocument"};

  virtual HRESULT GetDocument(VLMDocument_var& document) = 0;
};
using VLMIContainerOfDocument_var = VLMHandle<VLMIContainerOfDocument>;

/// The container of a part's geometry.
class VLMIPrtContainer : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIPrtContainer"};

  /// Gives the part whose geometry the container holds; null, and E_FAIL, when it holds none.
  virtual HRESULT GetPart(VLMISpecObject_var& part) = 0;
};
using VLMIPrtContainer_var = VLMHandle<VLMIPrtContainer>;
