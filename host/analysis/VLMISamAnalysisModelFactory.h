#pragma once

#include "analysis/VLMISamAnalysisConnector.h"
#include "modeler/VLMISpecObject.h"

/// Creates the analysis objects of a document. A late type can be created once a catalog that knows it is
/// loaded (`HVXAnalysisDocUtils::LoadCatalog`).
class VLMISamAnalysisModelFactory : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamAnalysisModelFactory"};

  /// Creates an analysis set of late type `lateType`, with external name `name` (which may be empty), as the
  /// last son of `father`. Null, and E_FAIL, when no loaded catalog knows the late type or the father is
  /// null.
  virtual HRESULT CreateSet(const VLMUnicodeString& lateType, const VLMUnicodeString& name,
                            const VLMBaseUnknown_var& father, VLMBaseUnknown_var& set) = 0;

  /// The same for a feature that is not a set.
  virtual HRESULT CreateFeature(const VLMUnicodeString& lateType, const VLMUnicodeString& name,
                                const VLMBaseUnknown_var& father, VLMISpecObject_var& feature) = 0;

  /// Creates the current support object for `connector`: it connects the same two objects and belongs to no
  /// feature until it is added to one (`VLMISamAnalysisSupport::AddSupports`). Null, and E_FAIL, when it
  /// cannot be made.
  virtual HRESULT CreateSupport(const VLMISamAnalysisConnector_var& connector,
                                VLMBaseUnknown_var& support) = 0;
};
using VLMISamAnalysisModelFactory_var = VLMHandle<VLMISamAnalysisModelFactory>;
