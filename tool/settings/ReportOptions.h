#pragma once

#include <CLI/CLI.hpp>

#include "settings/Arguments.h"

namespace tool {

/// The command that tells reports in another form, with all its options.
void AddReport(CLI::App& app, ReportArguments& report);

/// Once all was parsed. Throws `UsageError`.
void Check(const ReportArguments& report);

}  // namespace tool
