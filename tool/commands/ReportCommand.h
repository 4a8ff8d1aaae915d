#pragma once

#include "settings/Arguments.h"

namespace tool {

/// Tells reports in another form. Throws `UsageError`, and `standalone::DocumentError` when a report cannot
/// be read or the output cannot be written.
[[nodiscard]] ExitCode RunReports(const ReportArguments& arguments, const Places& places);

}  // namespace tool
