#pragma once

#include <vector>

#include "sheet/Intentions.h"

/// \file
/// What upgrades must make of each subject of some kinds; for the sources of the comparison only. Intentions
/// account for what differs; where an upgrade left a subject as it was, nothing does. Only what no rule of
/// `check` looks for stands here.

namespace standalone::sheet {

struct Duty {
  std::string_view identifier;
  std::string_view kinds;  ///< The names of kinds, separated by ", ".
  Quantity quantity;       ///< Names what is to be done.
  bool (*isLeftOut)(const Change& change);
};

/// A duty, and one of the kinds that it concerns.
struct DutyOfKind {
  const Kind* kind;
  const Duty* duty;
};

/// The duties of the upgrades that only the new document has been through.
[[nodiscard]] std::vector<DutyOfKind> DutiesBetween(const Sheet& before, const Sheet& after);

}  // namespace standalone::sheet
