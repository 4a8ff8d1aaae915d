#pragma once

#include <string>
#include <string_view>

#include "settings/Explanations.h"
#include "upgrade/VersionManager.h"

namespace tool::page {

/// Makes the page `file` of what differs between two documents. `difference` is what `diff --json` prints,
/// and `sheet` what their analyses say differently, as a record holds it; empty for nothing. Overwrites and
/// throws as `WriteRunPage` does.
void WriteDiffPage(std::string_view difference, std::string_view sheet,
                   const standalone::VersionManager& manager, const Explanations& explanations,
                   const std::string& file, bool overwrite);

}  // namespace tool::page
