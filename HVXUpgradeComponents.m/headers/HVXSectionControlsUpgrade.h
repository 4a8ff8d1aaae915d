#pragma once

#include "base/VLMBaseUnknown.h"

/// Gives element assignments of `analysisCase` their section controls: those of the global element
/// assignment's entry for the case's type of analysis, and those of the local element assignments beneath it.
/// Each local element assignment first gets one element assignment more, and the settings of its first one go
/// to its second. Gives what the local ones gave; E_FAIL for a case that cannot be scanned or has no global
/// element assignment, and where a local one with exactly two element assignments ends the walk.
HRESULT HVXAddSectionControlsToCase(const VLMBaseUnknown_var& analysisCase);
