#include <fmt/format.h>
#include <fmt/ranges.h>
#include <simdjson.h>

#include <algorithm>
#include <map>
#include <string>

#include "report/OthersUpgrade.h"
#include "report/ReportForms.h"
#include "report/RunSummary.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using simdjson::dom::element;

std::string TextAt(element object, const char* key) {
  std::string_view text;
  return object[key].get(text) == simdjson::SUCCESS ? std::string(text) : std::string();
}

// The word for programs as people read it: "left behind" for "leftBehind".
std::string WordsOf(std::string_view word) {
  std::string words;
  for (const char c : word) {
    const bool isCapital = c >= 'A' && c <= 'Z';
    if (isCapital) words += ' ';
    words += isCapital ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return Printable(words);
}

// Such as: HVXJobLT "Job.1" (id 3) in "Case". Empty of what is no feature.
std::string FeatureOf(element object) {
  std::int64_t id = 0;
  if (object["id"].get(id) != simdjson::SUCCESS) return {};
  const std::string alias = TextAt(object, "alias");
  const std::string name = alias.empty() ? TextAt(object, "name") : alias;
  const std::string owner = TextAt(object, "owner");
  return fmt::format("{}{} (id {}){}", Word(TextAt(object, "type")), name.empty() ? "" : ' ' + Quoted(name),
                     id, owner.empty() ? "" : " in " + Quoted(owner));
}

std::string ItemOf(element item) {
  const std::string problem = TextAt(item, "problem");
  if (!problem.empty()) return fmt::format("    {}\n", Printable(problem));
  const std::string feature = FeatureOf(item);
  const std::string reason = TextAt(item, "reason");
  std::string text = fmt::format("    {}, {}: {}", feature.empty() ? "the whole document" : feature,
                                 WordsOf(TextAt(item, "kind")), Printable(reason));
  std::vector<std::string> marks;
  for (const char* const key : {"upgrade", "code", "codeName"}) {
    const std::string mark = TextAt(item, key);
    if (!mark.empty() && reason.find(mark) == std::string::npos) marks.push_back(Printable(mark));
  }
  if (!marks.empty()) {
    const std::string others = OthersIn(item);
    text += fmt::format(" ({}{}{})", fmt::join(marks, " "), others.empty() ? "" : "; ", Printable(others));
  }
  const std::string nextStep = TextAt(item, "nextStep");
  return text + (nextStep.empty() ? "\n" : fmt::format("\n      -> {}.\n", Printable(nextStep)));
}

// Of a long JSON text the beginning.
std::string Shortened(const std::string& json) {
  constexpr std::size_t kMost = 60;
  if (json.size() <= kMost) return Printable(json);
  std::size_t end = kMost;  // not within a character
  while ((static_cast<unsigned char>(json[end]) & 0xc0U) == 0x80) --end;
  return Printable(json.substr(0, end)) + "...";
}

// Values of one key, of features of one late type, that the same upgrades took away.
struct Alike {
  std::string first;
  std::size_t count = 0;
};

std::string DroppedOf(element record) {
  std::map<std::string, Alike> all;
  simdjson::dom::array list;
  if (record["droppedValues"].get(list) != simdjson::SUCCESS) return {};
  for (const element each : list) {
    std::vector<std::string> upgrades;
    simdjson::dom::array by;
    if (each["by"].get(by) == simdjson::SUCCESS) {
      for (const element cause : by) upgrades.push_back(Printable(TextAt(cause, "upgrade")));
    }
    const std::string what =
        fmt::format("{}{}", Quoted(TextAt(each, "key")),
                    upgrades.empty() ? "" : fmt::format(" ({})", fmt::join(upgrades, ", ")));
    Alike& alike = all[fmt::format("{}, {}", Word(TextAt(each, "type")), what)];
    if (++alike.count > 1) continue;
    element values;
    element instead;
    const bool isReplaced = each["instead"].get(instead) == simdjson::SUCCESS;
    alike.first = fmt::format(
        "{}, {}: {}{}", FeatureOf(each), what,
        each["values"].get(values) == simdjson::SUCCESS ? Shortened(simdjson::minify(values)) : "",
        isReplaced ? fmt::format(", now {}", Shortened(simdjson::minify(instead))) : "");
  }
  std::string text;
  for (const auto& [what, alike] : all) {
    text += alike.count == 1
                ? fmt::format("    {}\n", alike.first)
                : fmt::format("    {}: {} features\n      first {}\n", what, alike.count, alike.first);
  }
  return text;
}

std::string RunText(std::string_view word, const RunOrigin& origin) {
  std::vector<std::string> libraries;
  for (const LibraryFile& each : origin.libraries)
    libraries.push_back(fmt::format("{} {}", Printable(each.name), Printable(each.version)));
  constexpr std::size_t kMostWords = 30;
  const std::vector<std::string>& given = origin.commandLine;
  std::vector<std::string> words;
  for (std::size_t i = 0; i < std::min(given.size(), kMostWords); ++i) words.push_back(Word(given[i]));
  if (given.size() > kMostWords) words.push_back(fmt::format("... and {} more", given.size() - kMostWords));
  return fmt::format("  {} {} on {} by {}{}:\n    {}\n", word, Printable(origin.time), Printable(origin.host),
                     Printable(origin.user),
                     libraries.empty() ? "" : fmt::format(", with {}", fmt::join(libraries, ", ")),
                     fmt::join(words, " "));
}

std::string HeadOf(const ReportFile& report) {
  const ReadReportResult& runs = report.Runs();
  std::string text = fmt::format("{}: a report of hvxupgrade {}, run in {}\n", Printable(report.Name()),
                                 Printable(runs.head.tool), Printable(runs.head.folder));
  text += RunText("begun", runs.head.origin);
  std::size_t later = 0;
  std::size_t joined = 0;
  for (const std::string& line : runs.otherLines)
    ++(line.starts_with(R"({"record":"joined")") ? joined : later);
  if (joined != 0) text += fmt::format("  merged from {}\n", Count(joined, "report"));
  if (later != 0) text += fmt::format("  resumed {}\n", later == 1 ? "once" : fmt::format("{} times", later));
  if (!runs.isFinished) {
    text += "  NOT FINISHED: its last run was killed, or is still running; the same command resumes it\n";
  } else if (runs.left != 0) {
    text += fmt::format("  NOT FINISHED: {} left when it ended {}; the same command resumes it\n",
                        Count(runs.left, "document"), Printable(runs.time));
  } else {
    text += fmt::format("  ended {} with exit code {}\n", Printable(runs.time), runs.exitCode);
  }
  return text;
}

// The section, with the title where it is not empty.
class Section {
 public:
  Section(const Writer& write, std::string title) : write_(write), title_(std::move(title)) {}
  void Write(std::string_view text) {
    if (!title_.empty()) write_(fmt::format("\n{}\n", std::exchange(title_, "")));
    write_(text);
  }

 private:
  const Writer& write_;
  std::string title_;
};

void WritePersons(const Reports& reports, const Writer& write) {
  simdjson::dom::parser parser;
  Section section(write, "Needs a person");
  for (const auto& report : reports) {
    report->ForEach([&](const ReportLine& line) {
      const DocumentResult& result = line.result;
      if (result.IsComplete()) return;
      std::string text = fmt::format("  {}: {}\n", Printable(line.file), WordsOf(NameOf(result.verdict)));
      const std::string list = "[" + result.attention + "]";
      for (const element item : parser.parse(list).get_array()) text += ItemOf(item);
      if (result.failsOnDrop && result.dropped != 0)
        text += fmt::format("    {} with dropped values, see below\n", Count(result.dropped, "attribute"));
      section.Write(text);
    });
  }
}

void WriteDropped(const Reports& reports, const Writer& write) {
  simdjson::dom::parser parser;
  Section section(write, "Dropped values: values of the old documents that are nowhere in the results");
  for (const auto& report : reports) {
    report->ForEach([&](const ReportLine& line) {
      if (line.result.dropped == 0) return;
      const element record = parser.parse(line.text.data(), line.text.size());
      section.Write(fmt::format("  {}: {}\n{}", Printable(line.file), Count(line.result.dropped, "attribute"),
                                DroppedOf(record)));
    });
  }
}

}  // namespace

void WriteText(const Reports& reports, const Writer& write) {
  RunSummary real(false);
  RunSummary tried(true);
  std::size_t things = 0;
  std::size_t dropped = 0;
  for (const auto& report : reports) {
    report->ForEach([&](const ReportLine& line) {
      things += line.result.needsPerson;
      dropped += line.result.dropped;
      (report->IsDryRun() ? tried : real).Add(line.file, line.result);
    });
  }
  if (real.Documents() != 0 || tried.Documents() == 0) write(real.Verdict() + "\n");
  if (tried.Documents() != 0) write(tried.Verdict() + "\n");
  for (const auto& report : reports) write(HeadOf(*report));
  WritePersons(reports, write);
  Totals totals = real.All();
  totals += tried.All();
  write(fmt::format("\nTotals\n  {}: {} concerned, {} changed, {} created, {} removed, {} failed\n",
                    Count(real.Features() + tried.Features(), "feature"), totals.concerned, totals.changed,
                    totals.created, totals.removed, totals.failed));
  write(fmt::format("  {} a person, {} with dropped values\n",
                    things == 1 ? "1 thing needs" : fmt::format("{} things need", things),
                    Count(dropped, "attribute")));
  WriteDropped(reports, write);
}

}  // namespace tool
