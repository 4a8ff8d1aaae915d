#pragma once

#include "settings/Arguments.h"
#include "settings/ExitCode.h"

namespace tool {

ExitCode RunClean(const CleanArguments& arguments);

}  // namespace tool
