#pragma once

#include "document/RequestCommit.h"
#include "document/Selection.h"
#include "document/Trace.h"
#include "record/Destination.h"
#include "record/DocumentResult.h"
#include "record/PlaceNote.h"
#include "report/RecordFile.h"
#include "settings/Limits.h"

namespace tool {

/// One document to upgrade.
struct UpgradeTask {
  const std::string& input;
  const Destination& destination;
  const standalone::VersionManager& manager;
  const Selection& selection;
  bool dryRun = false;
  bool quiet = false;
  bool strict = false;          ///< Write no result in which something needs a person.
  bool acceptFailures = false;  ///< Replace a document by such a result also without a backup.
  bool failOnDrop = false;      ///< Look for dropped values, and fail when there are any.
  bool sheet = true;            ///< Compare the analysis before and after.
  bool retry = false;           ///< Run again what left features behind.
  bool keepResult = false;      ///< Keep a result that cannot replace its document any more.
  /// The result may stand there already, made by an earlier run: the same bytes are no clash.
  bool skipsDone = false;
  /// Of a document that is current, says its header, no more is read when it need not be copied.
  bool skipsCurrent = false;
  bool tellsAll = false;  ///< The whole summary is wanted, not its first line alone.
  bool verbose = false;   ///< Nothing in it is to be shortened.
  const Limits& limits;
  RecordFile* record = nullptr;  ///< Null when no report is wanted.
  const Trace* trace = nullptr;
  PlaceNote* place = nullptr;  ///< Where the upgrade is, for who must tell of it when the process ends.
};

/// Reads the document, runs the selected upgrades, verifies the result, adds to the record, and puts the
/// result in place, announcing this right before. Whatever goes wrong is told by the result, and the files
/// are then as they were; throws `Interrupted` only.
[[nodiscard]] DocumentResult UpgradeDocument(const UpgradeTask& task, const RequestCommit& requestCommit);

}  // namespace tool
