#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <string>

#include "report/JsonOutput.h"
#include "report/ReportForms.h"

namespace tool {
namespace {

// The numbers of several documents.
struct Sums {
  std::size_t documents = 0;
  std::size_t features = 0;
  Totals totals;
  std::size_t thingsForPerson = 0;
  std::size_t dropped = 0;
  std::map<std::string, std::size_t, std::less<>> verdicts;

  void Add(const DocumentResult& result) {
    ++documents;
    features += result.features;
    totals += result.totals;
    thingsForPerson += result.needsPerson;
    dropped += result.dropped;
    ++verdicts[std::string(NameOf(result.verdict))];
  }
  void Add(const Sums& other) {
    documents += other.documents;
    features += other.features;
    totals += other.totals;
    thingsForPerson += other.thingsForPerson;
    dropped += other.dropped;
    for (const auto& [verdict, count] : other.verdicts) verdicts[verdict] += count;
  }
};

void AppendSums(JsonObject& object, const Sums& sums) {
  JsonObject totals(object.Key("totals"));
  totals.Number("documents", sums.documents);
  totals.Number("features", sums.features);
  AppendTotals(totals, sums.totals);
  totals.Number("thingsForPerson", sums.thingsForPerson);
  totals.Number("dropped", sums.dropped);
  JsonObject verdicts(totals.Key("verdicts"));
  for (const auto& [verdict, count] : sums.verdicts) verdicts.Number(verdict, count);
  verdicts.Close();
  totals.Close();
}

// A line without its line feed.
void AppendLine(fmt::memory_buffer& out, std::string_view line) {
  standalone::AppendRaw(out, line.substr(0, line.find_last_not_of('\n') + 1));
}

class JsonWriter {
 public:
  explicit JsonWriter(const Writer& write) : write_(write) {}

  void Write(const Reports& reports) {
    JsonObject top(out_);
    top.Text("report", "hvxupgrade");
    top.Number("version", kJsonVersion);
    JsonList list(top.Key("reports"));
    Sums all;
    for (const auto& report : reports) {
      list.Entry();
      all.Add(WriteReport(*report));
    }
    list.Close();
    AppendSums(top, all);
    top.Close();
    out_.push_back('\n');
    Flush();
  }

 private:
  Sums WriteReport(const ReportFile& report) {
    const ReadReportResult& runs = report.Runs();
    JsonObject object(out_);
    object.Name("file", report.Name());
    object.Flag("finished", runs.isFinished && runs.left == 0);
    if (runs.isFinished) {
      object.Number("left", runs.left);
      object.Number("exitCode", runs.exitCode);
      object.Text("ended", runs.time);
    }
    JsonList heads(object.Key("heads"));
    AppendLine(heads.Entry(), runs.headLine);
    for (const std::string& line : runs.otherLines) AppendLine(heads.Entry(), line);
    heads.Close();
    JsonList documents(object.Key("documents"));
    Sums sums;
    report.ForEach([&](const ReportLine& record) {
      sums.Add(record.result);
      documents.Entry();
      Flush();
      report.CopyRecord(record, write_);
    });
    documents.Close();
    AppendSums(object, sums);
    object.Close();
    return sums;
  }

  void Flush() {
    write_({out_.data(), out_.size()});
    out_.clear();
  }

  const Writer& write_;
  fmt::memory_buffer out_;
};

}  // namespace

void WriteJson(const Reports& reports, const Writer& write) {
  JsonWriter(write).Write(reports);
}

}  // namespace tool
