#pragma once

#include "analysis/VLMAnalysisExplicitParent.h"

class VLMMSHNode;

/// An explicit node; equals `NULL_exp` until it is linked.
class VLMAnalysisExplicitNode : public VLMAnalysisExplicitParent {
 public:
  constexpr VLMAnalysisExplicitNode() noexcept = default;

  /// Makes this the explicit counterpart in `model` of a mesh node; `NULL_exp`, with S_OK, when the node has
  /// none there. E_FAIL for a null node or model.
  HRESULT LinkWithMeshPointer(const VLMMSHNode* node, VLMAnalysisExplicitModel* model);
};
