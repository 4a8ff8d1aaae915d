#pragma once

#include <string_view>

#include "page/Detail.h"
#include "page/UpgradeIndex.h"

namespace tool::page {

/// What an analysis says before and after, from the comparison of its sheets as records hold it.
[[nodiscard]] Sheet SheetOf(std::string_view json, UpgradeIndex& upgrades);

/// The same without the subjects.
[[nodiscard]] Sheet CountsOfSheet(std::string_view json);

}  // namespace tool::page
