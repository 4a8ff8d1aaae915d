#pragma once

#include <set>
#include <string_view>
#include <vector>

#include "check/Conformity.h"
#include "upgrade/VersionManager.h"

/// \file
/// Upgrades of libraries other than the built-in one: no rule tells what they would change.

namespace standalone {

/// The late types that only such libraries migrate for the upgrade.
[[nodiscard]] std::set<std::string_view> TypesWithoutRules(const KnownUpgrade& upgrade);

/// The features that upgrades which the document has not been through may change, by all that can be known: a
/// pending finding for each such upgrade of each. A conversion of the whole document is told of its first
/// feature.
[[nodiscard]] std::vector<Finding> PendingWithoutRules(Document& document, const VersionManager& manager);

}  // namespace standalone
