#pragma once

#include <string_view>

#include "upgrade/UnknownUpgrades.h"

namespace tool {

/// The words for a document that is refused because of upgrades that nobody here knows.
[[nodiscard]] inline std::string_view StateOf(const standalone::UnknownUpgrades& unknown) {
  if (unknown.AreOnlyNotLoaded()) return "upgraded by a library that is not loaded";
  for (const standalone::MissingLibrary& each : unknown.Libraries()) {
    if (each.IsNewerProgram()) return "newer than this program";
  }
  return "newer than a library that is loaded";
}

}  // namespace tool
