#pragma once

#include "settings/Arguments.h"

namespace tool {

/// Upgrades the documents one after another, each in a worker process, and tells the results. Throws
/// `UsageError`, and `standalone::DocumentError` or `std::runtime_error` when it cannot even begin.
ExitCode RunUpgrade(const UpgradeArguments& arguments, const Places& places);

}  // namespace tool
