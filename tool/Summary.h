#pragma once

#include <string>

#include "Comparison.h"
#include "Destination.h"
#include "DocumentResult.h"

namespace tool {

/// What a summary tells about a run.
struct RunFacts {
  const std::string& input;
  const DocumentResult& result;
  const Comparison& comparison;
  const Destination& destination;
  bool dryRun;
  const standalone::UpgradeRun& run;
  const standalone::VersionManager& manager;
};

/// The summary of a document that was upgraded: the verdict, what needs a person, the totals by late type,
/// where the result is.
[[nodiscard]] std::string SummaryOfRun(const RunFacts& facts);

/// The summary of a document on which nothing was run.
[[nodiscard]] std::string SummaryWithoutRun(const std::string& input, Verdict verdict,
                                            const Destination& destination, bool dryRun);

}  // namespace tool
