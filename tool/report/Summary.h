#pragma once

#include <string>
#include <vector>

#include "record/Comparison.h"
#include "record/Destination.h"
#include "record/DocumentResult.h"
#include "report/Attention.h"
#include "sheet/Comparison.h"
#include "upgrade/VersionManager.h"

namespace tool {

/// What a summary tells about a run.
struct RunFacts {
  const std::string& input;
  const DocumentResult& result;
  const Comparison& comparison;
  const std::vector<AttentionItem>& attention;
  const std::vector<standalone::VersionManager::Needed>& broughtAlong;
  const std::string& heldBack;  ///< Why the result is not written; empty when it is.
  const Destination& destination;
  bool dryRun;
  const standalone::sheet::SheetTotals* sheet;  ///< Null when the analysis was not compared.
};

/// The summary of a document that was upgraded: the verdict, what needs a person, whether it is still the
/// same analysis, the totals by late type, where the result is.
[[nodiscard]] std::string SummaryOfRun(const RunFacts& facts);

/// What a summary tells about a document on which nothing was run.
struct FactsWithoutRun {
  const std::string& input;
  Verdict verdict;
  const std::vector<AttentionItem>& attention;
  const Destination& destination;
  bool isThere;  ///< What would be written stands at the destination already.
  bool dryRun;
};

[[nodiscard]] std::string SummaryWithoutRun(const FactsWithoutRun& facts);

}  // namespace tool
