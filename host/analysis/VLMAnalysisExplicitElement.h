#pragma once

#include "analysis/VLMAnalysisExplicitParent.h"

class VLMMSHElement;

/// An explicit element; equals `NULL_exp` until it is linked.
class VLMAnalysisExplicitElement : public VLMAnalysisExplicitParent {
 public:
  constexpr VLMAnalysisExplicitElement() noexcept = default;

  /// Makes this the explicit counterpart in `model` of a mesh element; `NULL_exp`, with S_OK, when the
  /// element has none there. E_FAIL for a null element or model.
  HRESULT LinkWithMeshPointer(const VLMMSHElement* element, VLMAnalysisExplicitModel* model);
};
