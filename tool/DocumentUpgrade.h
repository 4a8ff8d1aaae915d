#pragma once

#include "Destination.h"
#include "DocumentResult.h"
#include "Report.h"
#include "Selection.h"
#include "Trace.h"
#include "Worker.h"

namespace tool {

/// One document to upgrade.
struct UpgradeTask {
  const std::string& input;
  const Destination& destination;
  const standalone::VersionManager& manager;
  const Selection& selection;
  bool dryRun = false;
  bool quiet = false;
  Report* report = nullptr;  ///< Null when none is wanted.
  const Trace* trace = nullptr;
};

/// Reads the document, runs the selected upgrades, adds to the report, and puts the result in place,
/// announcing this right before. Whatever goes wrong is told by the result, and the files are then as they
/// were; throws `Interrupted` only.
[[nodiscard]] DocumentResult UpgradeDocument(const UpgradeTask& task, const AnnounceCommit& announceCommit);

}  // namespace tool
