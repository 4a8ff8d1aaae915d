#pragma once

#include "settings/Arguments.h"

namespace tool {

/// Lists the upgrades, or explains the chosen ones with what the data folder says of them, on standard
/// output.
ExitCode RunIdentifiers(const IdentifiersArguments& arguments, const Places& places,
                        const Installation& installation);

}  // namespace tool
