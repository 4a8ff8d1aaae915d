#pragma once

#include "base/VLMBaseUnknown.h"

/// The analysis model of a document: the root beneath which its cases stand. It is a feature as well
/// (`VLMISpecObject`, `VLMISpecAttrAccess`, `VLMILinkableObject`); its list attribute "FeatList" holds the
/// features whose values are kept in current basic components.
class VLMISamAnalysisModel : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamAnalysisModel"};

  /// Takes `object` out of the document, with all that stands beneath it; the attribute or list entry that
  /// held it goes too. `option` is 0. E_FAIL for a null object or one of another document, for
  /// an analysis model or container, and for an object that another feature than its father links to.
  virtual HRESULT RemoveObject(const VLMBaseUnknown_var& object, int option) = 0;
};
using VLMISamAnalysisModel_var = VLMHandle<VLMISamAnalysisModel>;
