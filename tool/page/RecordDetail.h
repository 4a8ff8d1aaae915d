#pragma once

#include <string>
#include <string_view>

#include "page/Detail.h"
#include "page/UpgradeIndex.h"
#include "report/ReportLines.h"

namespace tool::page {

/// A document's verdict for people. `isDryRun`: nothing was to be written.
[[nodiscard]] Verdict VerdictOf(const DocumentResult& result, bool isDryRun);
/// The verdict of several documents at once: "upgraded, need a person".
[[nodiscard]] Verdict GroupOf(const DocumentResult& result, bool isDryRun);

/// What the page holds of a document whose record is `line`, as `JsonParts` takes it; `record` is what was
/// read of it already. Tells `upgrades` what they did.
[[nodiscard]] Detail DetailOf(std::string_view line, const ReportLine& record, bool isDryRun,
                              UpgradeIndex& upgrades);
/// The same of a document for which the page has no room: only what counts in its totals.
[[nodiscard]] Detail CountsOf(std::string_view line, UpgradeIndex& upgrades);

}  // namespace tool::page
