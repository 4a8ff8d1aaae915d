#pragma once

#include <string_view>

#include "upgrade/UnknownUpgrades.h"

namespace tool {

/// The words for a document that is refused because of upgrades that nobody here knows.
[[nodiscard]] inline std::string_view StateOf(const standalone::UnknownUpgrades& unknown) {
  if (unknown.AreOnlyNotLoaded()) return "upgraded by a library that is not loaded";
  for (const standalone::MissingLibrary& each : unknown.Libraries()) {
    if (each.isLoaded && !each.IsNamed())
      return "upgraded by a newer program or a library that is not loaded";
  }
  return "upgraded by another version of a library that is loaded";
}

}  // namespace tool
