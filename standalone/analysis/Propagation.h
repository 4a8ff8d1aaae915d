#pragma once

#include "adapters/Attributes.h"

namespace standalone {

// Propagation: which steps a feature reaches besides the one that it stands in. It is noted that it
// does; no copies are made.

extern const Key kPropagationState;
inline constexpr std::int32_t kCreatedHere = 0;  ///< The state of all but what propagation brought.

/// Gives the feature the propagation data that it lacks: created where it stands, brought to no step.
void GiveDefaultPropagationData(Feature& feature);

/// Notes that the feature reaches the steps that follow the one that it stands beneath, without perturbation
/// steps; for a feature of the case's own set, every step after the initial one. Outside of a case it reaches
/// none. E_FAIL for a feature without propagation data, or with what is no reach among them.
HRESULT PropagateToLaterSteps(Feature& feature);

}  // namespace standalone
