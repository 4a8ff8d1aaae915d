#pragma once

#include "modeler/VLMISpecObject.h"

/// Walks the features of an analysis set.
class HVXITraverser : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXITraverser"};

  /// Gives the features that the set holds, in order. A set among them is given but not entered: it is walked
  /// by its own traverser. Empty, with S_OK, when there are none.
  virtual HRESULT ListFeatures(VLMListValVLMISpecObject_var& features) = 0;
};
using HVXITraverser_var = VLMHandle<HVXITraverser>;
