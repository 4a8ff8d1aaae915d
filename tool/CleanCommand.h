#pragma once

#include "Arguments.h"
#include "ExitCode.h"

namespace tool {

ExitCode RunClean(const CleanArguments& arguments);

}  // namespace tool
