#include "page/RecordDetail.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>
#include <set>

#include "page/FeatureMap.h"
#include "page/Findings.h"
#include "page/JsonParts.h"
#include "page/MissingNote.h"
#include "page/Numbers.h"
#include "page/SheetView.h"
#include "page/Steps.h"
#include "page/ValueText.h"
#include "terminal/Terminal.h"
#include "terminal/VisibleText.h"

namespace tool::page {
namespace {

using simdjson::dom::element;

constexpr std::size_t kMostDropped = 200;
constexpr std::size_t kMostNodes = 3000;

std::string ThingsNeed(std::size_t count) {
  return count == 1 ? "1 thing needs a person" : fmt::format("{} things need a person", Grouped(count));
}

// For one document and for several.
struct Words {
  Tone tone;
  std::string one;
  std::string several;
};

Words WordsFor(const DocumentResult& result, bool isDryRun) {
  const bool needs = result.needsPerson != 0;
  const std::string upgraded = isDryRun ? "would be upgraded" : "upgraded";
  switch (result.verdict) {
    case tool::Verdict::kUpgraded:
      if (result.IsComplete()) return {Tone::kGood, upgraded, upgraded};
      if (!needs)
        return {Tone::kAttention, upgraded + ", values were dropped", upgraded + ", values dropped"};
      return {Tone::kAttention, fmt::format("{}, {}", upgraded, ThingsNeed(result.needsPerson)),
              upgraded + ", need a person"};
    case tool::Verdict::kCurrent:
    case tool::Verdict::kNotLookedInto:
      if (!needs) return {Tone::kQuiet, "already current", "already current"};
      return {Tone::kAttention, fmt::format("already current, {}", ThingsNeed(result.needsPerson)),
              "already current, need a person"};
    case tool::Verdict::kNothingChosen:
      return {Tone::kQuiet, "the chosen upgrades are done already", "chosen upgrades done already"};
    case tool::Verdict::kDoneBefore:
      return {Tone::kQuiet, "done by an earlier run", "done by an earlier run"};
    case tool::Verdict::kHeldBack:
      return {Tone::kAttention, fmt::format("upgraded, but not written: {}", ThingsNeed(result.needsPerson)),
              "not written, need a person"};
    case tool::Verdict::kBadInput:
      return {Tone::kBad, "unreadable or invalid", "unreadable or invalid"};
    case tool::Verdict::kNewer:
      return {Tone::kBad, "newer or with unknown upgrades", "newer or with unknown upgrades"};
    case tool::Verdict::kNotLoaded:
      return {Tone::kBad, "upgraded by a library that is not loaded", "of a library that is not loaded"};
    case tool::Verdict::kUnwritable:
      return {Tone::kBad, "the result could not be written", "result could not be written"};
    case tool::Verdict::kChangedMeanwhile:
      return {Tone::kBad, "changed by another program meanwhile", "changed by another program meanwhile"};
    case tool::Verdict::kAborted:
      return {Tone::kBad, "the upgrade failed", "upgrade failed"};
    case tool::Verdict::kTimedOut:
      return {Tone::kBad, "timed out", "timed out"};
    case tool::Verdict::kCrashed:
      return {Tone::kBad, "the upgrade crashed", "upgrade crashed"};
    case tool::Verdict::kInterrupted:
      break;
  }
  return {Tone::kBad, "interrupted", "interrupted"};
}

std::string NextFor(const DocumentResult& result) {
  if (!result.Succeeded())
    return "The document is as it was. Do what the problem below says, then run the upgrade again";
  if (result.verdict == tool::Verdict::kHeldBack)
    return "Correct the things below in the old document, then run the upgrade again";
  if (result.needsPerson != 0)
    return "Check each thing below; where an upgrade left something behind, correct it, then run 'hvxupgrade "
           "upgrade --retry'";
  if (result.failsOnDrop && result.dropped != 0)
    return "Check the dropped values below, and enter again what is needed";
  return {};
}

void AddFile(std::vector<Labelled>& facts, const std::string& label, std::string_view json) {
  if (json.empty()) return;
  simdjson::dom::parser parser;
  const element file = parser.parse(simdjson::padded_string(json)).value();
  facts.emplace_back(label, fmt::format("{} ({} bytes)", NameFromUtf8(TextIn(file, "file")),
                                        Grouped(CountIn(file, "bytes"))));
  if (const std::string_view sum = TextIn(file, "sha256"); !sum.empty())
    facts.emplace_back(label + " SHA-256", sum);
}

std::vector<Labelled> FactsOf(const JsonParts& parts, const ReportLine& record) {
  std::vector<Labelled> facts;
  AddFile(facts, "Document", parts["input"]);
  AddFile(facts, "Result", parts["result"]);
  const auto textOf = [&parts](std::string_view key) {
    std::string text;
    simdjson::dom::parser parser;
    if (!parts[key].empty()) text = parser.parse(simdjson::padded_string(parts[key])).get_string().value();
    return NameFromUtf8(text);
  };
  if (const std::string backup = textOf("backup"); !backup.empty())
    facts.emplace_back("Old document kept as", backup);
  if (!record.result.kept.empty()) facts.emplace_back("Result kept as", record.result.kept);
  if (record.result.features != 0) facts.emplace_back("Features before", Grouped(record.result.features));
  if (!parts["seconds"].empty()) facts.emplace_back("Time", fmt::format("{} s", parts["seconds"]));
  return facts;
}

std::vector<TypeTotals> TypesOf(std::string_view json) {
  std::vector<TypeTotals> types;
  if (json.empty()) return types;
  simdjson::dom::parser parser;
  const simdjson::dom::object byType = parser.parse(simdjson::padded_string(json)).get_object().value();
  for (const auto& [type, totals] : byType) {
    TypeTotals one{.type = std::string(type),
                   .changed = CountIn(totals, "changed"),
                   .made = CountIn(totals, "created"),
                   .removed = CountIn(totals, "removed"),
                   .failed = CountIn(totals, "failed")};
    if (one.changed + one.made + one.removed + one.failed != 0) types.push_back(std::move(one));
  }
  std::ranges::stable_sort(types, std::greater<>(),
                           [](const TypeTotals& each) { return each.changed + each.made + each.removed; });
  return types;
}

std::string ListOf(const std::vector<element>& values) {
  std::string text;
  for (const element value : values)
    text += fmt::format("{}{}", text.empty() ? "" : ", ",
                        TextOf(value, [](std::int64_t id) { return fmt::format("#{}", id); }));
  return text;
}

Cut<Dropped> DroppedOf(std::string_view json, UpgradeIndex& upgrades) {
  Cut<Dropped> dropped;
  ForEachEntry(json, [&](element entry) {
    if (++dropped.count > kMostDropped) return;
    const std::string_view alias = TextIn(entry, "alias");
    Dropped one{.id = IntegerIn(entry, "id"),
                .type = std::string(TextIn(entry, "type")),
                .name = std::string(alias.empty() ? TextIn(entry, "name") : alias),
                .owner = std::string(TextIn(entry, "owner")),
                .key = std::string(TextIn(entry, "key")),
                .values = ListOf(EntriesIn(entry, "values")),
                .instead = {},
                .upgrades = {}};
    if (element instead; entry["instead"].get(instead) == simdjson::SUCCESS) one.instead = ListOf({instead});
    for (const element by : EntriesIn(entry, "by")) {
      one.upgrades.push_back(upgrades.PlaceOf(TextIn(by, "upgrade")));
    }
    dropped.first.push_back(std::move(one));
  });
  return dropped;
}

// Without `features`, only how many features each step changed.
std::vector<Step> StepsOf(const JsonParts& parts, UpgradeIndex& upgrades, const FeatureMap* features) {
  Steps steps(upgrades, features);
  ForEachEntry(parts["changed"], [&steps](element entry) { steps.AddChanged(entry); });
  ForEachEntry(parts["created"], [&steps](element entry) { steps.AddMade(entry); });
  ForEachEntry(parts["removed"], [&steps](element entry) { steps.AddRemoved(entry); });
  return steps.Take();
}

std::vector<std::string> NotesOf(const JsonParts& parts) {
  std::vector<std::string> notes;
  ForEachEntry(parts["broughtAlong"], [&notes](element entry) {
    std::vector<std::string_view> by;
    for (const element each : EntriesIn(entry, "by")) by.push_back(TextIn(each, "upgrade"));
    notes.push_back(fmt::format("{} was run as well, because {} must not run before it: {}",
                                TextIn(entry, "upgrade"), fmt::join(by, ", "), TextIn(entry, "reason")));
  });
  ForEachEntry(parts["harmlessFailures"], [&notes](element entry) {
    notes.push_back(fmt::format("{} ended early on {}, which is harmless: {}", TextIn(entry, "upgrade"),
                                CountOf(CountIn(entry, "features"), "feature"), TextIn(entry, "reason")));
  });
  ForEachEntry(parts["missingLibraries"],
               [&notes](element library) { notes.push_back(NoteOnMissing(library)); });
  return notes;
}

}  // namespace

Verdict VerdictOf(const DocumentResult& result, bool isDryRun) {
  const Words words = WordsFor(result, isDryRun);
  std::string sentence = words.one;
  sentence.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(sentence.front())));
  return {words.tone, std::move(sentence), NextFor(result)};
}

Verdict GroupOf(const DocumentResult& result, bool isDryRun) {
  const Words words = WordsFor(result, isDryRun);
  return {words.tone, words.several, {}};
}

Detail DetailOf(std::string_view line, const ReportLine& record, bool isDryRun, UpgradeIndex& upgrades) {
  const JsonParts parts(line);
  Detail detail;
  detail.verdict = VerdictOf(record.result, isDryRun);
  detail.problem = record.result.problem;
  detail.facts = FactsOf(parts, record);
  Findings findings(upgrades);
  ForEachEntry(parts["needsPerson"], [&findings](element entry) { findings.Add(entry); });
  detail.attention = findings.Take();
  detail.dropped = DroppedOf(parts["droppedValues"], upgrades);
  FeatureMap features;
  for (const auto& [key, mark] : {std::pair("mentioned", ' '), std::pair("changed", 'c'),
                                  std::pair("created", 'm'), std::pair("removed", 'r')})
    features.AddAll(parts[key], mark);
  detail.steps = StepsOf(parts, upgrades, &features);
  std::set<int> busy;
  for (const Step& step : detail.steps) busy.insert(step.upgrade);
  ForEachEntry(parts["upgrades"], [&](element entry) {
    std::string_view upgrade;
    if (entry.get(upgrade) != simdjson::SUCCESS) return;
    if (const int place = upgrades.PlaceOf(upgrade); !busy.contains(place)) detail.idle.push_back(place);
  });
  detail.notes = NotesOf(parts);
  if (!parts["upgrades"].empty() && parts["changed"].empty()) {
    detail.idle.clear();
    detail.notes.emplace_back(
        "The report was written with --report-detail summary: which upgrade changed what is not in it");
  }
  detail.types = TypesOf(parts["byType"]);
  detail.tree = features.MakeTree(kMostNodes);
  detail.sheet = SheetOf(parts["sheet"], upgrades);
  return detail;
}

Detail CountsOf(std::string_view line, UpgradeIndex& upgrades) {
  const JsonParts parts(line);
  Detail detail;
  detail.facts = {{"Time", fmt::format("{} s", parts["seconds"])}};
  detail.steps = StepsOf(parts, upgrades, nullptr);
  detail.types = TypesOf(parts["byType"]);
  detail.sheet = CountsOfSheet(parts["sheet"]);
  return detail;
}

}  // namespace tool::page
