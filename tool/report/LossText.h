#pragma once

#include <fmt/format.h>

#include <vector>

#include "compare/DroppedValues.h"
#include "report/SignOff.h"

/// \file
/// What an upgrade took away or changed on purpose, for people. Both are shortened, and say so, unless `all`
/// are wanted.

namespace tool {

/// Appends which values stand nowhere in the result: a line for each key, with the first feature that lost
/// one. Nothing when there are none. With a report that lists them all it need not be said how to get one.
/// `document` must be the one that was upgraded.
void AppendDropped(fmt::memory_buffer& out, const standalone::Document& document,
                   const std::vector<standalone::DroppedValues>& dropped, bool hasReport, bool all);

/// Appends whether the analysis is still the same, and what was changed on purpose, most first.
void AppendAnalysis(fmt::memory_buffer& out, const SignOff& signOff, bool all);

}  // namespace tool
