#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "archive/Processes.h"
#include "archive/Supervisor.h"
#include "document/DocumentUpgrade.h"
#include "file/FileIdentity.h"
#include "record/Destinations.h"
#include "record/GivenDocument.h"
#include "record/PlaceNote.h"
#include "report/RunReport.h"
#include "report/RunSummary.h"
#include "settings/Arguments.h"
#include "terminal/RunProgress.h"

namespace tool {

/// What a run works with. All must outlive it.
struct ArchiveTask {
  const UpgradeArguments& arguments;
  const standalone::VersionManager& manager;
  const Selection& selection;
  const std::vector<GivenDocument>& documents;
  const Destinations& destinations;
  bool isSearched;              ///< There may be more documents than anybody named.
  RunReport* report = nullptr;  ///< Null when none is wanted.
  const Trace* trace = nullptr;
};

/// Upgrades documents in worker processes, tells what becomes of each, and adds it to the report.
class ArchiveUpgrade {
 public:
  /// `summary` holds what earlier runs of the same command did, and gets what this one does.
  ArchiveUpgrade(const ArchiveTask& task, RunSummary& summary);

  /// Upgrades those documents, by their places in the task's.
  RunEnd Run(const std::vector<std::size_t>& documents);

  /// How many of them were closed.
  [[nodiscard]] std::size_t Done() const { return state_.done; }
  /// Of a single document the table that comes after all else; empty without one.
  [[nodiscard]] const std::string& Table() const { return table_; }
  /// Why no worker could be started, where that ended the run.
  [[nodiscard]] const std::string& StartFailure() const { return processes_.StartFailure(); }

 private:
  // A document that a worker is at, as it was when it was given.
  struct AtWork {
    std::optional<standalone::FileIdentity> read;
    std::optional<standalone::FileIdentity> destination;
    Clock::time_point begun;
  };

  [[nodiscard]] std::string Work(std::size_t document, const RequestCommit& requestCommit);
  void KeepNamesOfOneFileApart(const std::vector<std::size_t>& documents);
  void PrepareWorker();
  void NoteGiven(std::size_t document);
  bool Close(std::size_t document, const WorkEnd& end);
  [[nodiscard]] DocumentResult ResultOf(std::size_t document, const WorkEnd& end, const AtWork& before) const;
  bool AddToReport(std::size_t document, const WorkEnd& end, const AtWork& before,
                   const DocumentResult& result);
  void Tell(const DocumentResult& result) const;
  void TellProgress();

  const ArchiveTask& task_;
  RunSummary& summary_;
  bool isSingle_;
  std::vector<Load> loads_;
  // What a worker shares with its parent.
  struct OfWorker {
    std::shared_ptr<RecordFile> record;  // null when no report is wanted
    std::shared_ptr<PlaceNote> place;
  };
  OfWorker own_;  // in a worker, and for the next one
  std::map<WorkerNumber, OfWorker> workers_;
  std::map<std::size_t, AtWork> atWork_;
  RunState state_;
  std::string table_;
  RunProgress progress_;
  Processes processes_;
};

}  // namespace tool
