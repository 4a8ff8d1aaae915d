#include <fmt/format.h>
#include <simdjson.h>

#include <string>

#include "report/ReportForms.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using simdjson::dom::element;

// Appends one row, field by field.
class Row {
 public:
  Row& Text(std::string_view text) {
    std::string seen = Printable(text);
    constexpr std::string_view kFormulas = "=+-@";
    if (!seen.empty() && kFormulas.find(seen.front()) != std::string_view::npos) seen.insert(0, 1, '\'');
    if (seen.find_first_of(",\"") == std::string::npos) return Raw(seen);
    std::string quoted = "\"";
    for (const char c : seen) quoted.append(c == '"' ? 2 : 1, c);
    return Raw(quoted + '"');
  }
  Row& Number(std::size_t number) { return Raw(std::to_string(number)); }
  Row& Raw(std::string_view field) {
    if (!isFirst_) row_ += ',';
    isFirst_ = false;
    row_ += field;
    return *this;
  }
  [[nodiscard]] std::string Line() const { return row_ + "\r\n"; }

 private:
  std::string row_;
  bool isFirst_ = true;
};

// What stands at the path; empty where there is nothing. Texts are as they are, all else is JSON.
std::string At(element record, const char* path) {
  element value;
  if (record.at_pointer(path).get(value) != simdjson::SUCCESS) return {};
  std::string_view text;
  return value.get(text) == simdjson::SUCCESS ? std::string(text) : simdjson::minify(value);
}

std::string CountAt(element record, const char* path) {
  simdjson::dom::array list;
  return record.at_pointer(path).get(list) == simdjson::SUCCESS ? std::to_string(list.size()) : "";
}

std::string RowOf(const ReportFile& report, const ReportLine& line, element record) {
  const DocumentResult& result = line.result;
  Row row;
  row.Text(report.Name()).Text(line.file).Raw(NameOf(result.verdict)).Text(result.problem);
  row.Number(result.needsPerson).Number(result.dropped).Number(result.features);
  row.Number(result.totals.concerned).Number(result.totals.changed).Number(result.totals.created);
  row.Number(result.totals.removed).Number(result.totals.failed).Raw(CountAt(record, "/upgrades"));
  for (const char* const path : {"/sheet/counts/equal", "/sheet/counts/same", "/sheet/counts/onPurpose",
                                 "/sheet/counts/unaccounted", "/seconds", "/peakMemory", "/input/bytes"})
    row.Text(At(record, path));
  row.Text(At(record, "/input/sha256")).Text(line.output ? line.output->path : "");
  row.Text(At(record, "/result/bytes")).Text(At(record, "/result/sha256"));
  row.Text(At(record, "/backup")).Text(result.kept);
  return row.Line();
}

}  // namespace

void WriteCsv(const Reports& reports, const Writer& write) {
  write(
      "report,file,verdict,problem,thingsForPerson,dropped,features,concerned,changed,created,removed,failed,"
      "upgrades,equal,same,onPurpose,unaccounted,seconds,peakMemory,inputBytes,inputSha256,resultFile,"
      "resultBytes,resultSha256,backup,kept\r\n");
  simdjson::dom::parser parser;
  for (const auto& report : reports) {
    report->ForEach([&](const ReportLine& line) {
      const element record = parser.parse(line.text.data(), line.text.size());
      write(RowOf(*report, line, record));
    });
  }
}

}  // namespace tool
