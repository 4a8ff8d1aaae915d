#pragma once

#include <string>

#include "upgrade/UnknownUpgrades.h"

namespace tool {

/// Why a document with such upgrades is refused, as a clause about it: "it was upgraded by AcmeUpgrades 3.1,
/// which is not loaded".
[[nodiscard]] std::string ProblemOf(const standalone::UnknownUpgrades& unknown);

/// The same as sentences that are safe to show, with what to do.
[[nodiscard]] std::string NoteOf(const standalone::UnknownUpgrades& unknown);

}  // namespace tool
