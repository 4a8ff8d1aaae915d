#pragma once

#include "settings/Arguments.h"
#include "upgrade/VersionManager.h"

namespace tool {

/// Tells what a document analyses, or what two analyse differently: then it ends with `kUnaccounted` where a
/// difference that is told is one that no upgrade is there to make. Throws `standalone::DocumentError` when a
/// document cannot be read and `UsageError` when there is no case or step of the wanted name.
ExitCode RunSheet(const SheetArguments& arguments, const Places& places,
                  const standalone::VersionManager& manager);

}  // namespace tool
