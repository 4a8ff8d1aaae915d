#pragma once

#include "adapters/Attributes.h"

namespace standalone {

// Propagation: a feature that was made in one step holds in the steps after it. It notes the steps and makes
// no copies.

extern const Key kPropagationState;

/// Gives the feature the propagation data that it lacks: made where it stands, and propagated to no step.
void AddPropagationData(Feature& feature);

/// Notes the steps that the feature reaches: those after the one that it stands beneath, or every one after
/// the initial step for a feature of the case's own. Perturbation steps are left out, since nothing carries
/// over to them. E_FAIL for a feature without propagation data.
HRESULT PropagateToLaterSteps(Feature& feature);

}  // namespace standalone
