#pragma once

#include "check/Conformity.h"

namespace standalone {

/// What features lost since the document was read though no upgrade means to take it away: values that could
/// not be read, or were missing, and were replaced by a default; supports in whose place nothing came. In the
/// order of the first changes; beyond upgrades, each with the feature as it is.
[[nodiscard]] std::vector<Finding> FindLosses(Document& document);

}  // namespace standalone
