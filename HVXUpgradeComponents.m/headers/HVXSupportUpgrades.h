#pragma once

#include "analysis/VLMISamAnalysisConnector.h"
#include "analysis/VLMISamAnalysisSupport.h"

/// \file
/// The routines that move supports of analysis features to what the current model wants them to rest on.

/// Moves each support that rests on a feature of late type "Solid" to the main body of the solid's part;
/// other supports stay. A solid that cannot be replaced is passed over. E_FAIL when the feature is no
/// `VLMISpecObject` or no `VLMISamAnalysisSupport`, else 0, also for one without supports.
HRESULT HVXUpgradeBodySupport(const VLMBaseUnknown_var& feature);

/// Takes the support on (`solid`, `second`) out of `spSupport` and puts one on the main body of the solid's
/// part in. E_FAIL when an argument, the part or its main body is missing; else the code of the host's
/// operation that failed, or that of the last one. Nothing is put back when the second of the two fails.
HRESULT HVXReplaceSolid(const VLMISamAnalysisSupport_var& spSupport, const VLMBaseUnknown_var& solid,
                        const VLMBaseUnknown_var& second);

/// Takes the support on the topological body `spBody` out of `spSupport` and puts one on the body feature
/// that produces it in. E_FAIL when an argument or the body's part is missing; 0 when no feature produces the
/// body.
HRESULT HVXUpgradeTopologicalBodySupport(const VLMISamAnalysisSupport_var& spSupport,
                                         const VLMBody_var& spBody, const VLMBaseUnknown_var& second);

/// Replaces the support on `group`, a group of supports, by supports of its own in `spSupport`; `spConnector`
/// is the group's connector there. 0, and nothing changes, for a group of another kind or one that is defined
/// on a mesh part.
HRESULT HVXConvertGroupToSupport(const VLMBaseUnknown_var& group, const VLMISamAnalysisSupport_var& spSupport,
                                 const VLMISamAnalysisConnector_var& spConnector);
