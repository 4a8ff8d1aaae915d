#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/HVXUpgradeTable.h"

namespace standalone {

/// All that the library has an upgrade for, or lists.
[[nodiscard]] std::set<std::string_view> IdentifiersOf(const HVXUpgradeLibrary& library);

/// What is wrong with the library's tables, and what to do, to be read behind "the upgrade library "; empty
/// for nothing. It finds what nobody could work with (missing names and routines, texts that no document or
/// report can hold), and what would let an upgrade be recorded that never ran.
[[nodiscard]] std::string FaultOfTables(const HVXUpgradeLibrary& library);

/// A circle of identifiers in the orders of the libraries, each of which must run before the next, and the
/// last before the first; empty when there is none.
[[nodiscard]] std::vector<std::string_view> CircleOfOrders(
    const std::vector<const HVXUpgradeLibrary*>& libraries);

}  // namespace standalone
