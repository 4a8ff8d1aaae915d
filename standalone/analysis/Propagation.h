#pragma once

#include "adapters/Attributes.h"

namespace standalone {

// Propagation: which steps a feature reaches besides the one that it stands in. Steps are noted; no copies
// are made.

extern const Key kPropagationState;
inline constexpr std::int32_t kCreatedHere = 0;  ///< The state of all but what propagation brought.

/// Gives the feature the propagation data that it lacks: created where it stands, brought to no step.
void GiveDefaultPropagationData(Feature& feature);

/// Notes the steps that follow the one that the feature stands beneath, without perturbation steps; for a
/// feature of the case's own set, every step after the initial one. E_FAIL for a feature without propagation
/// data, or with what is no list of steps among them.
HRESULT PropagateToLaterSteps(Feature& feature);

}  // namespace standalone
