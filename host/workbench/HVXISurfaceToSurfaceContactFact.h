#pragma once

#include "analysis/VLMISamAnalysisSet.h"
#include "modeler/VLMDocument.h"
#include "modeler/VLMISpecObject.h"

/// Makes contact pairs and what belongs to them. Offered by the component "HVXSurfaceToSurfaceContactFact".
class HVXISurfaceToSurfaceContactFact : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXISurfaceToSurfaceContactFact"};

  /// Creates a contact pair in `interactionSet` for `analysisCase`, without supports. Null, and E_FAIL, when
  /// it cannot be made.
  virtual HRESULT CreateContactPair(const VLMISamAnalysisSet_var& interactionSet,
                                    const VLMBaseUnknown_var& analysisCase, VLMISpecObject_var& pair) = 0;

  /// Completes an existing contact: gives a standard one the interference fit that it lacks. S_OK when
  /// nothing lacks.
  virtual HRESULT CompleteContact(const VLMBaseUnknown_var& contact) = 0;

  /// Creates a contact control for `contact`. E_FAIL, and nothing changes, when it has one.
  virtual HRESULT CreateContactControl(const VLMBaseUnknown_var& contact) = 0;

  /// Turns an old surface-to-surface contact into a contact pair of the standard solver that stands in
  /// `interactionSet`: the same object with another late type, which answers to the old view and the new. Its
  /// settings, supports and name stay for the caller to carry over.
  virtual HRESULT ConvertContact(const VLMISamAnalysisSet_var& interactionSet,
                                 const VLMBaseUnknown_var& contact, const VLMBaseUnknown_var& analysisCase,
                                 const VLMDocument_var& document) = 0;
};
using HVXISurfaceToSurfaceContactFact_var = VLMHandle<HVXISurfaceToSurfaceContactFact>;
