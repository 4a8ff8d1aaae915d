#pragma once

#include "Arguments.h"
#include "ExitCode.h"

namespace tool {

/// Ends like diff: `kDone` when the documents hold the same, else `kDifferent`.
ExitCode RunDiff(const DiffArguments& arguments);

}  // namespace tool
