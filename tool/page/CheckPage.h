#pragma once

#include <span>
#include <string>

#include "page/PageFile.h"
#include "settings/Explanations.h"
#include "upgrade/VersionManager.h"

namespace tool::page {

/// Writes the page of documents that were checked; `entries` are what `check --json` prints of each, and
/// `left` is how many were not checked.
void WriteCheckPage(std::span<const std::string> entries, std::size_t left,
                    const standalone::VersionManager& manager, const Explanations& explanations,
                    const Writer& write);

}  // namespace tool::page
