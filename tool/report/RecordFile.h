#pragma once

#include <fmt/format.h>

#include <filesystem>
#include <string>
#include <vector>

#include "compare/DroppedValues.h"
#include "model/Document.h"
#include "record/DocumentResult.h"
#include "report/Causes.h"
#include "report/JsonOutput.h"
#include "report/SignOff.h"
#include "upgrade/VersionManager.h"

namespace tool {

/// One document's run, as the report tells it.
struct ReportedRun {
  const standalone::Document& document;  ///< Its change log was on.
  const standalone::UpgradeRun& run;
  const Comparison& comparison;
  const std::vector<standalone::VersionManager::Needed>& broughtAlong;
  const std::vector<standalone::DroppedValues>& dropped;
  const SignOff* signOff;  ///< Null when the analysis was not compared.
};

/// How much a record tells of the changes.
enum class ReportDetail {
  kSummary,  ///< Nothing: the totals tell.
  kChanges,  ///< Each change; of what was created and removed, which features these are.
  kFull,     ///< Also all that those features hold.
};

/// A nameless file beside the report, in which a worker gathers what is long of a document's record, to be
/// taken over into the report when the document is done. The file is shared with the process that made it.
/// Every operation throws `standalone::DocumentError` (`kUnwritable`) when it fails.
class RecordFile {
 public:
  RecordFile(std::filesystem::path report, ReportDetail detail);
  ~RecordFile();
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

  /// Another record: what the file held goes.
  void Begin();
  /// Adds the fields of a document that was upgraded, as they go on in a JSON object; to be called once.
  void AddRun(const ReportedRun& reported);

  [[nodiscard]] int Descriptor() const { return descriptor_; }

 private:
  void AppendSheet(JsonObject& entry, fmt::memory_buffer& text, const SignOff& signOff);
  void AppendSubjects(JsonObject& sheet, fmt::memory_buffer& text, const standalone::sheet::Sheet& after,
                      const std::vector<const standalone::sheet::Subject*>& lost);
  void AppendChanges(JsonObject& entry, fmt::memory_buffer& text, const ReportedRun& reported,
                     const Causes& causes);
  void Flush(fmt::memory_buffer& text);
  void FlushIfLarge(fmt::memory_buffer& text);
  [[noreturn]] void Fail() const;

  std::filesystem::path report_;
  ReportDetail detail_;
  int descriptor_ = -1;
};

}  // namespace tool
