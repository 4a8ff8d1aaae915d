#pragma once

#include "workbench/HVXISamAnalysisConnectionDesign.h"
#include "workbench/HVXISpring.h"

/// Appends to `found` the connection mesh parts that are attached to the points of `spDesign`, as the
/// connection mesher of the spring's mesh part knows them; asks the design to fill lists that stand unfilled.
/// E_FAIL without a design, a spring or its mesh part. 0, with nothing appended, for a spring whose mesh part
/// meshes no connections.
HRESULT HVXCollectMeshPartsOfOrphanPoints(const VLMBaseUnknown_var& spring,
                                          const HVXISamAnalysisConnectionDesign_var& spDesign,
                                          VLMListValVLMBaseUnknown_var& found);
