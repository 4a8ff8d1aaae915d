#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "file/FileIdentity.h"
#include "record/Destination.h"
#include "record/DocumentResult.h"
#include "report/RecordFile.h"
#include "report/ReportLines.h"
#include "report/RunSummary.h"

namespace tool {

/// What becomes of one document, but for what its `RecordFile` holds.
struct DocumentRecord {
  const std::string& input;
  const DocumentResult& result;
  const Destination& destination;
  bool dryRun;
  std::optional<standalone::FileIdentity> read;   ///< The document before its upgrade.
  std::optional<standalone::FileIdentity> wrote;  ///< The result, where there is one.
  double seconds;
};

/// Lines of a report, with their line feeds: the first one, that of a run that goes on with it, and the last
/// one. `left`: how many documents were not done.
[[nodiscard]] std::string HeadLine(const ReportHead& head);
[[nodiscard]] std::string ContinuedLine(const RunOrigin& origin);
[[nodiscard]] std::string EndLine(const RunSummary& summary, ExitCode code, std::size_t left);

/// The report of a run: a file with a head line, a line for each document that is done, and a line at the
/// end. Lines are appended when documents are done, so that a run that is killed leaves a report of all that
/// it had done; the next one with the same command goes on from it. One run at a time writes to a report.
///
/// Operations throw `standalone::DocumentError` (`kUnwritable`) when they fail.
class RunReport {
 public:
  /// Begins a report, or goes on with the one that stands there: `onRecord` is called for each of its
  /// records. Refuses a file that is no report, or one of another command or program. `anew`: what stands
  /// there is replaced.
  RunReport(const std::filesystem::path& file, const ReportHead& head, bool anew, ReportDetail detail,
            const std::function<void(const ReportLine&)>& onRecord);
  /// Begins a report on standard output. There is nothing to go on with, and a line that finds no reader
  /// stays half.
  RunReport(const ReportHead& head, ReportDetail detail);
  ~RunReport();
  RunReport(const RunReport&) = delete;
  RunReport& operator=(const RunReport&) = delete;

  /// Whether an earlier run began it.
  [[nodiscard]] bool IsGoingOn() const { return goesOn_; }
  /// For a worker that is to be started.
  [[nodiscard]] std::unique_ptr<RecordFile> MakeRecordFile() const;

  /// `rest`: what a worker wrote of it; null for nothing. When it cannot be written whole, the report is as
  /// it was.
  void Append(const DocumentRecord& record, const RecordFile* rest);
  /// The last line. `left`: how many documents were not done.
  void Finish(const RunSummary& summary, ExitCode code, std::size_t left);

 private:
  [[nodiscard]] bool IsStream() const { return descriptor_ < 0; }
  bool Open(bool anew);
  void OpenAndLock();
  [[nodiscard]] bool Lock() const;
  [[nodiscard]] bool IsInPlace() const;
  [[nodiscard]] bool HoldsOnlyPartOfHead() const;
  void Continue(const ReportHead& head, const std::function<void(const ReportLine&)>& onRecord);
  void AppendLine(const std::function<void()>& write);
  void Write(std::string_view bytes);
  void TakeOver(const RecordFile& rest);
  void Sync();
  [[noreturn]] void Fail() const;
  [[noreturn]] void Refuse(
      std::string_view problem,
      std::string_view advice = "Give the report another name, or --force to replace it") const;

  std::filesystem::path file_;
  ReportDetail detail_;
  int descriptor_ = -1;  // -1 for standard output
  bool goesOn_ = false;
  std::int64_t end_ = 0;  // of the last whole line, unless one is being written
  bool isTorn_ = false;   // something may stand behind it
  std::chrono::steady_clock::time_point synced_;
};

}  // namespace tool
