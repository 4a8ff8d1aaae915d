#pragma once

#include "settings/Arguments.h"

namespace tool {

/// Lists the upgrades, or explains the chosen ones, on standard output.
ExitCode RunIdentifiers(const IdentifiersArguments& arguments, const standalone::VersionManager& manager);

}  // namespace tool
