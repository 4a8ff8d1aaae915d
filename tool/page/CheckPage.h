#pragma once

#include <span>
#include <string>

#include "settings/Explanations.h"
#include "upgrade/VersionManager.h"

namespace tool::page {

/// Makes the page `file` of documents that were checked; `entries` are what `check --json` prints of each,
/// and `left` is how many were not checked. Overwrites and throws as `WriteRunPage` does.
void WriteCheckPage(std::span<const std::string> entries, std::size_t left,
                    const standalone::VersionManager& manager, const Explanations& explanations,
                    const std::string& file, bool overwrite);

}  // namespace tool::page
