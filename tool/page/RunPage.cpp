#include "page/RunPage.h"

#include <fmt/ranges.h>
#include <simdjson.h>

#include <algorithm>
#include <cctype>
#include <numeric>
#include <unordered_map>

#include "file/DocumentError.h"
#include "page/Numbers.h"
#include "page/Page.h"
#include "page/RecordDetail.h"
#include "page/ValueText.h"
#include "settings/CommandText.h"
#include "terminal/Terminal.h"
#include "terminal/VisibleText.h"

namespace tool::page {
namespace {

using standalone::DocumentError;

struct Recorded {
  std::size_t report;
  ReportLine line;
};

class RunPage {
 public:
  RunPage(const Reports& reports, bool isKept, const standalone::VersionManager& manager,
          const Explanations& explanations)
      : reports_(reports),
        isKept_(isKept),
        upgrades_(manager, explanations),
        page_(Page::Kind::kUpgrade,
              {{.label = "To look at", .help = "Things that need a person"},
               {.label = "Dropped", .help = "Attributes with values that are nowhere in the result"},
               {.label = "Analysis differs", .help = "Differences of the analysis that no upgrade explains"},
               {.label = "Features", .help = "Features of the document before the upgrade"},
               {.label = "Changed", .help = "Features that were changed"},
               {.label = "Created", .help = "Features that were created"},
               {.label = "Removed", .help = "Features that were removed"},
               {.label = "Time", .help = "Seconds that the upgrade took", .unit = "s"}}) {
    for (std::size_t i = 0; i < reports.size(); ++i) Read(i);
    // Not in the order in which workers were done.
    std::ranges::stable_sort(records_, {},
                             [](const Recorded& record) { return std::string_view(record.line.file); });
  }

  void WriteTo(const Writer& write) {
    // What matters most has a place in the page first.
    std::vector<std::size_t> order(records_.size());
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(order, {}, [this](std::size_t record) {
      const DocumentResult& result = records_[record].line.result;
      return result.IsComplete() ? 2 : result.Succeeded() ? 1 : 0;
    });
    for (const std::size_t record : order) AddDetail(record);
    for (std::size_t record = 0; record < records_.size(); ++record) AddLine(record);
    Compose();
    page_.Finish(file_, upgrades_, write);
  }

 private:
  // What the page says of a document beside its record.
  struct Told {
    int block = -1;
    std::size_t unaccounted = 0;
    double seconds = 0;
  };

  void Read(std::size_t number) {
    const ReportFile& report = *reports_[number];
    report.ForEach([this, number](const ReportLine& line) {
      records_.push_back({.report = number, .line = line});
      records_.back().line.result.attention.clear();  // the page takes it from the report again
    });
    const ReadReportResult& read = report.Runs();
    page_.runs.push_back(FactsOf(read.head));
    for (const std::string& other : read.otherLines) page_.runs.push_back(FactsOf(other));
    isFinished_ = isFinished_ && read.isFinished && read.left == 0;
    if (!read.isFinished)
      page_.notes.push_back(
          fmt::format("The run of {} was not finished when this page was created", report.Name()));
    const auto isGiven = [&read](const char* option) {
      return std::ranges::find(read.head.arguments, option) != read.head.arguments.end();
    };
    if (isGiven("--only") || isGiven("--until")) {
      isChosen_ = true;
      page_.notes.push_back(fmt::format(
          "The run of {} ran only the upgrades that --only or --until chose: others may be pending, "
          "which 'hvxupgrade status' shows",
          report.Name()));
    }
    if (read.left != 0)
      page_.notes.push_back(fmt::format("The run of {} left {} undone; the same command resumes it",
                                        report.Name(), CountOf(read.left, "document")));
  }

  static std::vector<Labelled> FactsOf(const ReportHead& head) {
    const RunOrigin& origin = head.origin;
    std::vector<Labelled> facts{{"Begun", origin.time},
                                {"By", fmt::format("{} on {}", origin.user, origin.host)},
                                {"Folder", head.folder},
                                {"Command", fmt::format("{}", fmt::join(origin.commandLine, " "))},
                                {"Program", "hvxupgrade " + head.tool}};
    for (const LibraryFile& library : origin.libraries)
      facts.emplace_back("Library", fmt::format("{} {} ({}, SHA-256 {})", library.name, library.version,
                                                library.file, library.sha256));
    facts.emplace_back("Language", origin.language);
    if (!origin.otherArguments.empty())
      facts.emplace_back("Options", fmt::format("{}", fmt::join(origin.otherArguments, " ")));
    return facts;
  }

  // Of a run that went on with a report, or was merged into it.
  static std::vector<Labelled> FactsOf(const std::string& line) {
    simdjson::dom::parser parser;
    const simdjson::dom::element run = parser.parse(line).value();
    std::string command;
    for (const simdjson::dom::element word : EntriesIn(run, "commandLine")) {
      std::string_view text;
      if (word.get(text) == simdjson::SUCCESS)
        command += fmt::format("{}{}", command.empty() ? "" : " ", NameFromUtf8(text));
    }
    return {{TextIn(run, "record") == "continued" ? "Resumed" : "Begun", std::string(TextIn(run, "time"))},
            {"By", fmt::format("{} on {}", TextIn(run, "user"), TextIn(run, "host"))},
            {"Command", command}};
  }

  void AddDetail(std::size_t number) {
    const Recorded& record = records_[number];
    const std::string line = LineOf(record);
    Told& told = told_.try_emplace(number).first->second;
    Detail detail = ReadDetail(record, line);
    told.unaccounted = detail.sheet.unaccounted;
    for (const auto& [label, value] : detail.facts) {
      if (label == "Time") told.seconds = std::strtod(value.c_str(), nullptr);
    }
    page_.CountTypes(detail.types);
    if (file_.IsFull()) return;
    detail.cut =
        isKept_ ? fmt::format("Long lists of this document are cut; {} holds all of them",
                              reports_[record.report]->Name())
                : "Long lists of this document are cut; with --report as well, the report holds all of them";
    fmt::memory_buffer text;
    AppendJson(text, detail);
    told.block = file_.AddDetail(number, {text.data(), text.size()});
  }

  [[nodiscard]] Detail ReadDetail(const Recorded& record, const std::string& line) {
    try {
      return file_.IsFull() ? CountsOf(line, upgrades_)
                            : DetailOf(line, record.line, IsDryRun(record), upgrades_);
    } catch (const simdjson::simdjson_error& error) {
      throw DocumentError(DocumentError::Kind::kInvalid, reports_[record.report]->Name(), 0,
                          fmt::format("the record of {} is damaged ({})", record.line.file, error.what()),
                          "Give the report as the program wrote it");
    }
  }

  [[nodiscard]] std::string LineOf(const Recorded& record) const {
    std::string line;
    line.reserve(static_cast<std::size_t>(record.line.size));
    reports_[record.report]->CopyRecord(record.line, [&line](std::string_view bytes) { line += bytes; });
    return line;
  }

  void AddLine(std::size_t number) {
    const ReportLine& line = records_[number].line;
    const DocumentResult& result = line.result;
    const Told& told = told_.at(number);
    const std::size_t place =
        page_.Add(line.file, GroupOf(result, IsDryRun(records_[number])),
                  {static_cast<double>(result.needsPerson), static_cast<double>(result.dropped),
                   static_cast<double>(told.unaccounted), static_cast<double>(result.features),
                   static_cast<double>(result.totals.changed), static_cast<double>(result.totals.created),
                   static_cast<double>(result.totals.removed), told.seconds});
    page_.SetBlock(place, told.block);
    sum_.needsPerson += result.needsPerson;
    sum_.dropped += result.dropped;
    sum_.features += result.features;
    sum_.totals += result.totals;
    unaccounted_ += told.unaccounted;
    if (!result.Succeeded()) ++failed_;
  }

  void Compose() {
    const std::size_t documents = page_.Documents();
    const std::size_t need = page_.NeedPerson();
    const bool isDryRun =
        std::ranges::all_of(reports_, [](const auto& report) { return report->IsDryRun(); });
    page_.title = fmt::format("{} of {}", isDryRun ? "Dry run of the upgrade" : "Upgrade",
                              documents == 1 ? records_.front().line.file : CountOf(documents, "document"));
    if (isChosen_) page_.title += ", chosen upgrades only";
    page_.verdict = isFinished_ ? Overall(documents, need) : OfUnfinished(Overall(documents, need));
    page_.numbers = {
        {"documents", documents, Tone::kQuiet},
        {need - failed_ == 1 ? "needs a person" : "need a person", need - failed_,
         need == failed_ ? Tone::kQuiet : Tone::kAttention},
        {"without a result", failed_, failed_ == 0 ? Tone::kQuiet : Tone::kBad},
        {"features changed", sum_.totals.changed, Tone::kQuiet},
        {"features created", sum_.totals.created, Tone::kQuiet},
        {"features removed", sum_.totals.removed, Tone::kQuiet},
        {"attributes with dropped values", sum_.dropped, Tone::kQuiet},
        {"differences unaccounted for", unaccounted_, unaccounted_ == 0 ? Tone::kQuiet : Tone::kAttention}};
    if (documents == 1) page_.numbers.erase(page_.numbers.begin(), page_.numbers.begin() + 3);
    if (const std::size_t without = page_.WithoutDetail(); without != 0)
      page_.notes.push_back(
          fmt::format("The details of {} are not in this page, which would be too large for browsers. {}",
                      CountOf(without, "document"), AdviceOnRest()));
  }

  [[nodiscard]] std::string AdviceOnRest() const {
    if (!isKept_) return "With --report as well, 'hvxupgrade report' writes a page of each";
    std::string names;
    for (const auto& report : reports_) names += ShellWord(report->Name()) + " ";
    return fmt::format("'hvxupgrade report {}--document NAME --format html' writes a page of each", names);
  }

  // Other reports may be of runs that wrote their results.
  [[nodiscard]] bool IsDryRun(const Recorded& record) const { return reports_[record.report]->IsDryRun(); }

  // What is said of the documents that are done must not be taken for all of them.
  static Verdict OfUnfinished(Verdict verdict) {
    if (verdict.tone != Tone::kBad) verdict.tone = Tone::kAttention;
    char& first = verdict.words.front();
    first = static_cast<char>(std::tolower(static_cast<unsigned char>(first)));
    verdict.words.insert(0, "Not finished: ");
    if (verdict.next.empty()) verdict.next = "The same command resumes it";
    return verdict;
  }

  [[nodiscard]] Verdict Overall(std::size_t documents, std::size_t need) const {
    if (documents == 0) return {Tone::kQuiet, "No document was done", ""};
    if (documents == 1) {
      Verdict verdict = VerdictOf(records_.front().line.result, IsDryRun(records_.front()));
      if (verdict.tone == Tone::kGood) verdict.words += ", and nothing needs a person";
      return verdict;
    }
    if (need == 0)
      return {Tone::kGood,
              fmt::format("{}{}, and nothing needs a person", isFinished_ ? "All is well: " : "",
                          CountOf(documents, "document")),
              ""};
    const std::size_t attention = need - failed_;
    std::string words = fmt::format("{} of {}", Grouped(attention == 0 ? failed_ : attention),
                                    CountOf(documents, "document"));
    if (attention != 0) words += attention == 1 ? " needs a person" : " need a person";
    if (attention != 0 && failed_ != 0) words += fmt::format(", and {}", Grouped(failed_));
    if (failed_ != 0) words += failed_ == 1 ? " has no result" : " have no result";
    return {failed_ != 0 ? Tone::kBad : Tone::kAttention, std::move(words),
            fmt::format("Open them from the table below, which begins with them: each says what to do{}",
                        isFinished_ ? ". The others are done" : "")};
  }

  const Reports& reports_;
  bool isKept_;
  UpgradeIndex upgrades_;
  Page page_;
  PageFile file_;
  bool isFinished_ = true;
  bool isChosen_ = false;  // some upgrades were left out
  std::vector<Recorded> records_;
  std::unordered_map<std::size_t, Told> told_;
  DocumentResult sum_;
  std::size_t failed_ = 0;
  std::size_t unaccounted_ = 0;
};

}  // namespace

void WriteRunPage(const Reports& reports, bool isKept, const standalone::VersionManager& manager,
                  const Explanations& explanations, const Writer& write) {
  RunPage(reports, isKept, manager, explanations).WriteTo(write);
}

}  // namespace tool::page
