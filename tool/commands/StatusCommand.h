#pragma once

#include "settings/Arguments.h"

namespace tool {

/// Tells on standard output, for each document, which upgrades it has been through and which it needs.
ExitCode RunStatus(const StatusArguments& arguments, const standalone::VersionManager& manager);

}  // namespace tool
