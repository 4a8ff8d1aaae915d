#pragma once

#include "settings/Arguments.h"
#include "settings/ExitCode.h"

namespace tool {

/// Makes one report of the reports of a run's shards, and tells which documents none or several of them did.
/// Throws `UsageError` for reports that do not belong together, and `standalone::DocumentError`.
/// `commandLine`: for the report.
[[nodiscard]] ExitCode RunMerge(const MergeArguments& arguments, const std::vector<std::string>& commandLine);

}  // namespace tool
