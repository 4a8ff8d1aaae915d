#pragma once

#include "settings/Arguments.h"
#include "settings/ExitCode.h"
#include "upgrade/VersionManager.h"

namespace tool {

ExitCode RunCheck(const CheckArguments& arguments, const Places& places,
                  const standalone::VersionManager& manager);

}  // namespace tool
