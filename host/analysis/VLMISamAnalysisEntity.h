#pragma once

#include "analysis/VLMISamBasicComponent.h"

/// An analysis entity: a feature that a set holds (a load, a restraint, a property, an output request) and
/// that keeps its values in basic components.
class VLMISamAnalysisEntity : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamAnalysisEntity"};

  /// Gives the first basic component called `name`; null, and E_FAIL, when there is none.
  virtual HRESULT GetBasicComponent(const VLMString& name, VLMISamBasicComponent_var& component) = 0;

  /// Gives the basic components called `name`, in order; an empty name gives all of them. Empty, with S_OK,
  /// when there are none.
  virtual HRESULT ListBasicComponents(const VLMString& name, VLMListValVLMBaseUnknown_var& components) = 0;

  /// Removes the first basic component called `name`. E_FAIL when there is none.
  virtual HRESULT RemoveBasicComponent(const VLMString& name) = 0;

  /// Gives the objects that hold the entity, the nearest first: its set, what holds the set, and so on.
  /// Empty, with S_OK, for an entity that nothing holds.
  virtual HRESULT ListParents(VLMListValVLMBaseUnknown_var& parents) = 0;
};
using VLMISamAnalysisEntity_var = VLMHandle<VLMISamAnalysisEntity>;
