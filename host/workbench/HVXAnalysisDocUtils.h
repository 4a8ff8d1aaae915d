#pragma once

#include "analysis/VLMISamAnalysisCase.h"
#include "analysis/VLMISamAnalysisModel.h"
#include "analysis/VLMISamAnalysisModelFactory.h"
#include "analysis/VLMISamAnalysisSet.h"
#include "base/VLMString.h"
#include "modeler/VLMILinkableObject.h"

/// What is asked about an analysis document, and the few things that are done to it as a whole. A handle that
/// cannot be given is null, a list that cannot be given is empty, and the code is then negative unless the
/// operation says otherwise.
class HVXAnalysisDocUtils {
 public:
  HVXAnalysisDocUtils() = delete;

  /// Gives the document that holds `feature`.
  static HRESULT GetDocument(VLMDocument_var& document, const VLMBaseUnknown_var& feature);

  /// Gives the document that is being opened or edited.
  static HRESULT GetCurrentDocument(VLMDocument_var& document);

  /// Gives the document's analysis model.
  static HRESULT GetAnalysisModel(VLMISamAnalysisModel_var& model, const VLMDocument_var& document);

  /// Gives the factory that creates analysis objects in the document.
  static HRESULT GetFactory(VLMISamAnalysisModelFactory_var& factory, const VLMDocument_var& document);

  /// Gives every analysis case of the document, this workbench's or not, in document order. Empty, with S_OK,
  /// when there are none.
  static HRESULT GetAllAnalysisCases(VLMListValVLMBaseUnknown_var& cases, const VLMDocument_var& document);

  /// Gives the analysis case that `feature` belongs to: for a solution, the one that it is the solution of.
  static HRESULT GetWorkingCase(VLMISamAnalysisCase_var& analysisCase, const VLMDocument_var& document,
                                const VLMBaseUnknown_var& feature);

  /// Gives the document's analysis sets of type `setType`, such as "PropertySet", in document order. Empty,
  /// with S_OK, when there are none.
  static HRESULT GetAnalysisSets(VLMListValVLMBaseUnknown_var& sets, const VLMDocument_var& document,
                                 const VLMUnicodeString& setType);

  /// Gives, in order, the members of the set of late type `setType`, such as
  /// "HVXFieldOutputRequestContainerLT", that stands beneath `holder` (a step). Empty, with S_OK, when there
  /// is no such set or it has no members.
  static HRESULT GetFeatureListFromSet(const VLMUnicodeString& setType, const VLMBaseUnknown_var& holder,
                                       VLMListValVLMISpecObject_var& features);

  /// Gives the interaction set of `holder`, a case or a step.
  static HRESULT GetInteractionSet(const VLMBaseUnknown_var& holder, VLMISamAnalysisSet_var& interactionSet);

  /// Gives the features that have the same father as `feature`, itself left out, in document order. Empty,
  /// with S_OK, when there are none.
  static HRESULT GetAllSiblingFeatures(const VLMBaseUnknown_var& feature,
                                       VLMListValVLMISpecObject_var& siblings);

  /// The part whose geometry `object` belongs to; null when it belongs to none.
  [[nodiscard]] static VLMISpecObject_var GetPartAsSpecObject(const VLMILinkableObject_var& object);

  /// Makes the late types of the feature catalog in file `catalog`, such as "HVXAnalysisStepCatalog.VLMfct",
  /// available in the document. Loading one twice changes nothing. E_FAIL when there is no such catalog.
  static HRESULT LoadCatalog(const VLMString& catalog, const VLMDocument_var& document);

  /// Deletes an analysis entity: takes it out of its set and the document, with all that stands beneath it.
  static HRESULT RemoveAnalysisEntity(const VLMBaseUnknown_var& entity);
};
