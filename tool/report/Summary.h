#pragma once

#include <string>
#include <vector>

#include "compare/DroppedValues.h"
#include "record/Destination.h"
#include "record/DocumentResult.h"
#include "report/Attention.h"
#include "report/SignOff.h"
#include "upgrade/VersionManager.h"

namespace tool {

/// What a summary tells about a run.
struct RunFacts {
  const std::string& input;
  const DocumentResult& result;
  const standalone::Document& document;  ///< As the run left it.
  const std::vector<AttentionItem>& attention;
  const std::vector<standalone::DroppedValues>& dropped;  ///< Empty also when nobody looked for them.
  const std::vector<standalone::VersionManager::Needed>& broughtAlong;
  const std::string& heldBack;  ///< Why the result is not written; empty when it is.
  const Destination& destination;
  bool dryRun;
  bool hasReport;
  bool all;                ///< Nothing is to be shortened.
  const SignOff* signOff;  ///< Null when the analysis was not compared.
};

/// The summary of a document that was upgraded: the verdict, what needs a person, what was dropped, whether
/// it is still the same analysis, where the result is.
[[nodiscard]] std::string SummaryOfRun(const RunFacts& facts);

/// What a summary tells about a document on which nothing was run.
struct FactsWithoutRun {
  const std::string& input;
  Verdict verdict;
  const std::vector<AttentionItem>& attention;
  const standalone::UnknownUpgrades& unknown;  ///< Those of libraries that are not loaded.
  const Destination& destination;
  bool isThere;  ///< What would be written stands at the destination already.
  bool dryRun;
  bool all;  ///< Nothing is to be shortened.
};

[[nodiscard]] std::string SummaryWithoutRun(const FactsWithoutRun& facts);

}  // namespace tool
