#pragma once

#include "base/VLMBaseUnknown.h"

/// \file
/// The routines that several upgrade classes share.

/// Marks the feature out of date, so that the host rebuilds it at its next update. E_FAIL when it is no
/// `VLMISpecObject`, else 0.
HRESULT HVXMarkOutOfDate(const VLMBaseUnknown_var& feature);

/// Runs the host's own analysis upgrade of the feature and gives its result; E_FAIL when the feature is null
/// or offers no `VLMISamUpgrade`.
HRESULT HVXRunHostUpgrade(const VLMBaseUnknown_var& feature);
