#pragma once

#include <string>

#include "upgrade/UnknownUpgrades.h"

namespace tool {

/// Why a document with such upgrades is refused, and what to do, as sentences that are safe to show.
[[nodiscard]] std::string NoteOf(const standalone::UnknownUpgrades& unknown);

}  // namespace tool
