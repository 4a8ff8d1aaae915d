#pragma once

#include <map>
#include <string>

#include "record/Comparison.h"

namespace tool {

/// What a run did by late type, as a table for people; empty when it did nothing. A long one is shortened to
/// the late types of which features were changed most, and says so, unless `all` are wanted.
[[nodiscard]] std::string TypeTable(const std::map<std::string, Totals>& byType, bool all);

}  // namespace tool
