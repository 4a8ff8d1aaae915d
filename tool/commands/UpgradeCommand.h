#pragma once

#include "settings/Arguments.h"

namespace tool {

/// Upgrades the documents one after another, each in a worker process, and tells the results. Throws
/// `UsageError`, and `standalone::DocumentError` or `std::runtime_error` when it cannot even begin. `all`: of
/// which these are a part.
ExitCode RunUpgrade(const UpgradeArguments& arguments, const Arguments& all);

}  // namespace tool
