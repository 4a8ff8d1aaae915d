#pragma once

#include <string>
#include <vector>

#include "settings/Arguments.h"

namespace tool {

/// The arguments that decide which documents are upgraded, what becomes of them and where the results go, in
/// one spelling: two commands with the same ones are the same run. Those that only tell how to go about it or
/// what to tell, such as the number of workers, are left out.
[[nodiscard]] std::vector<std::string> DecidingArguments(const UpgradeArguments& arguments);

}  // namespace tool
