#pragma once

#include "modeler/VLMDocument.h"
#include "modeler/VLMIKpeParm.h"
#include "modeler/VLMISpecObject.h"

/// What is asked about and created for single analysis features. What cannot be given is null, and the code
/// is then negative unless the operation says otherwise.
class HVXAnalysisEntityUtils {
 public:
  HVXAnalysisEntityUtils() = delete;

  /// Gives the analysis case above `feature`; a case gives itself. E_FAIL when it stands beneath none.
  static HRESULT GetParentCaseFromObject(const VLMBaseUnknown_var& feature, VLMISpecObject_var& analysisCase);

  /// Creates an element assignment for `owner`, a local element assignment or an entry of a global one. It is
  /// not yet in the owner's list. E_FAIL when it cannot be made.
  static HRESULT CreateElementAssignment(const VLMBaseUnknown_var& owner, VLMISpecObject_var& assignment);

  /// Creates a knowledge parameter called `name`, such as "Step Time", of magnitude `magnitude`, such as
  /// "Time", with `value` in the magnitude's base unit. `flag` 1 makes it visible to the user. Can succeed
  /// without giving a parameter, when the document wants none. E_FAIL for an unknown magnitude.
  static HRESULT CreateKpeParam(const VLMUnicodeString& magnitude, const VLMUnicodeString& name,
                                VLMIKpeParm_var& parameter, double value, const VLMDocument_var& document,
                                unsigned char flag);

  /// Sets the feature's physical type, such as "THERMAL_STATIC_LINEAR". E_FAIL for a null feature.
  static HRESULT SetPhysicalTypeToSpecObject(const VLMISpecObject_var& feature,
                                             const VLMUnicodeString& physicalType);
};
