#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "upgrade/VersionManager.h"

namespace standalone {

/// What of a document's pending upgrades is run.
struct Choice {
  std::vector<std::string> identifiers;  ///< Oldest first, as among the pending ones.
  /// Those among them that nobody wanted, and why they come along.
  std::vector<VersionManager::Needed> broughtAlong;
};

/// Those of `pending` that are `wanted`, and those that must not be left out with them.
[[nodiscard]] Choice ChooseUpgrades(const VersionManager& manager, const std::vector<std::string>& wanted,
                                    const std::vector<std::string>& pending);

/// The known identifier that was probably meant by one that is not known: with few letters wrong, or the
/// first that holds the text. Empty for none.
[[nodiscard]] std::string_view LikelyMeant(const VersionManager& manager, std::string_view identifier);

/// How many features the upgrade of a document of so many may make, unless somebody allows more: many times
/// what any upgrade that made sense has made.
[[nodiscard]] std::size_t UsualCreationLimit(std::size_t features);

}  // namespace standalone
