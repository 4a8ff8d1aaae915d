#pragma once

#include <fmt/format.h>

#include <filesystem>
#include <string>
#include <vector>

#include "compare/DroppedValues.h"
#include "file/AtomicFile.h"
#include "model/Document.h"
#include "record/Destination.h"
#include "record/DocumentResult.h"
#include "upgrade/VersionManager.h"

namespace tool {

/// One document's run, as the report tells it.
struct ReportedRun {
  const std::string& input;
  const DocumentResult& result;
  const Destination& destination;
  bool dryRun;
  const standalone::Document& document;  ///< Its change log was on.
  const standalone::UpgradeRun& run;
  const Comparison& comparison;
  const std::vector<standalone::VersionManager::Needed>& broughtAlong;
  const std::vector<standalone::DroppedValues>& dropped;
};

/// What needs a person in a document without a result, as one JSON object.
[[nodiscard]] std::string AttentionOf(const std::string& input, const DocumentResult& result);

/// The report file in the making. It begins with what is known last, so the documents' parts are gathered in
/// a nameless file beside it, which worker processes share. Every operation throws
/// `standalone::DocumentError`
/// (`kUnwritable`) when it fails.
class Report {
 public:
  /// Refuses a file that exists already unless `overwrite`.
  Report(const std::filesystem::path& file, bool overwrite);
  ~Report();
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  /// Takes back what was added since the last call of `Keep`, in this or a worker process.
  void Discard();
  void Keep();

  void AddRun(const ReportedRun& reported);
  /// A document on which nothing was run, or that has no result.
  void AddWithoutRun(const std::string& input, const DocumentResult& result, const Destination& destination,
                     bool dryRun);

  /// Puts the report in place.
  void Finish(const std::vector<DocumentResult>& results, const std::string& verdict, ExitCode code,
              bool dryRun);

 private:
  void Flush(fmt::memory_buffer& text);
  void FlushIfLarge(fmt::memory_buffer& text);
  [[noreturn]] void Fail() const;

  std::filesystem::path file_;
  standalone::AtomicFile output_;
  int parts_ = -1;
  std::int64_t kept_ = 0;
};

}  // namespace tool
