#pragma once

#include "settings/Arguments.h"
#include "settings/ExitCode.h"

namespace tool {

/// Ends like diff: `kDone` when the documents hold the same, else `kDifferent`.
ExitCode RunDiff(const DiffArguments& arguments, const Places& places);

}  // namespace tool
