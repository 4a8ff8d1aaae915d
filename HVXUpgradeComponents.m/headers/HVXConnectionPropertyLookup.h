#pragma once

#include "base/VLMBaseUnknown.h"

/// \file
/// How an interaction finds the connection property that it belongs to, and a property what it connects.

/// Gives the two objects that the first support of `feature` connects. For a contact the first is its
/// connection property, for a connection property both are what the property itself rests on. E_FAIL when the
/// feature has no supports or one of the two objects lacks; the first is given even when the second lacks.
HRESULT HVXLookUpConnectionProperty(const VLMBaseUnknown_var& feature, VLMBaseUnknown_var& first,
                                    VLMBaseUnknown_var& second);
