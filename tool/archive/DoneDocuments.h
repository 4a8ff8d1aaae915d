#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "record/GivenDocument.h"
#include "report/ReportLines.h"
#include "report/RunSummary.h"

namespace tool {

/// Which documents of a run an earlier run with the same report has done.
class DoneDocuments {
 public:
  /// `again`: what is to be done all the same: "failed", "incomplete", "all", or nothing. Both must outlive
  /// it.
  DoneDocuments(const std::vector<GivenDocument>& documents, const std::string& again);

  /// Takes in the records of the report, in their order; of several of one document the last one counts.
  void Add(const ReportLine& line);
  /// Adds those that are done to the summary, as the records tell that stand in the report.
  void AddTo(RunSummary& summary, const std::filesystem::path& report) const;

  /// Whether its file is as it was then, or as the run left it, and it is not to be done again.
  [[nodiscard]] bool IsDone(std::size_t document) const { return done_[document].isDone; }
  /// Whether the result that the record tells of is as the run left it.
  [[nodiscard]] bool IsOwnResult(std::size_t document) const { return done_[document].isOwnResult; }

 private:
  struct Done {
    bool isDone = false;
    bool isOwnResult = false;
    std::size_t record = 0;  // which one tells, from 1 on
  };

  const std::string& again_;
  std::unordered_map<std::string_view, std::size_t> places_;
  std::vector<Done> done_;
  std::size_t records_ = 0;
};

}  // namespace tool
