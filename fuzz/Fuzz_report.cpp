// Any bytes as a report: refused with a message, or read; what was read up to the last record is read the
// same when the rest is cut off, as a run does that goes on.

#include <filesystem>
#include <fstream>
#include <vector>

#include "Harness.h"
#include "file/DocumentError.h"
#include "report/ReportLines.h"

namespace {

struct Report {
  bool isReport = false;
  std::int64_t end = 0;
  std::vector<std::string> files;
};

Report ReportOf(const std::string& text) {
  Report report;
  try {
    const std::string& file = fuzzing::MemoryFileOf(text);
    report.end = tool::ReadReport(file, [&](const tool::ReportLine& line) {
                   fuzzing::Require(line.begin + line.size <= static_cast<std::int64_t>(text.size()),
                                    "a record stands in the report");
                   report.files.push_back(line.file);
                 }).end;
    static_cast<void>(tool::ReadReportHead(file));
    report.isReport = true;
  } catch (const standalone::DocumentError&) {
  }
  return report;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const Report report = ReportOf(text);
  if (!report.isReport) return 0;
  fuzzing::Require(report.end > 0 && report.end <= static_cast<std::int64_t>(size),
                   "it ends within the report");
  const Report cut = ReportOf(text.substr(0, static_cast<std::size_t>(report.end)));
  fuzzing::Require(cut.isReport && cut.end == report.end && cut.files == report.files,
                   "a run that goes on reads what the one before it wrote");
  return 0;
}
