#pragma once

#include <string>
#include <string_view>

#include "page/PageFile.h"
#include "settings/Explanations.h"
#include "upgrade/VersionManager.h"

namespace tool::page {

/// Writes the page of what differs between two documents. `difference` is what `diff --json` prints, and
/// `sheet` what their analyses say differently, as a record holds it; empty for nothing.
void WriteDiffPage(std::string_view difference, std::string_view sheet,
                   const standalone::VersionManager& manager, const Explanations& explanations,
                   const Writer& write);

}  // namespace tool::page
