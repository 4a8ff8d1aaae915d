#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "report/ReportLines.h"

namespace tool {

/// A report that is to be told in another form. Of several records of one document the last one counts, and
/// the others are passed over.
class ReportFile {
 public:
  /// Reads through the report. `name`: a file, or "-" for standard input, which is kept in a nameless file
  /// meanwhile: a report is gone through several times. `documents`: only these, named as in the report or by
  /// the end of their paths; all when there are none. Throws as `ReadReport` does.
  ReportFile(const std::string& name, const std::vector<std::string>& documents);
  ~ReportFile();
  ReportFile(const ReportFile&) = delete;
  ReportFile& operator=(const ReportFile&) = delete;

  /// For people.
  [[nodiscard]] const std::string& Name() const { return name_; }
  /// What stands there besides records: which runs wrote it, and whether they came to their end.
  [[nodiscard]] const ReadReportResult& Runs() const { return runs_; }
  [[nodiscard]] bool IsDryRun() const;
  /// Which of the names that were asked for none of the documents bears.
  [[nodiscard]] std::vector<std::string> NotThere(const std::vector<std::string>& documents) const;

  /// Hands over the records that count, in their order.
  void ForEach(const std::function<void(const ReportLine& record)>& take) const;
  /// Hands over the bytes of a record as it stands there, in pieces, without the line feed.
  void CopyRecord(const ReportLine& record, const std::function<void(std::string_view bytes)>& write) const;

 private:
  void KeepStandardInput();

  std::string name_;
  std::string path_;     // under which it is read
  int descriptor_ = -1;  // of standard input, kept
  ReadReportResult runs_;
  std::map<std::string, std::int64_t, std::less<>> begins_;  // of the record that counts, by document
};

}  // namespace tool
