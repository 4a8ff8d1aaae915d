#include "report/Summary.h"

#include <fmt/format.h>

#include "report/LossText.h"
#include "report/UnknownText.h"
#include "terminal/Table.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

std::string NeedingPerson(std::size_t count) {
  return fmt::format("{} a person", count == 1 ? "1 thing needs" : fmt::format("{} things need", count));
}

void AppendVerdict(fmt::memory_buffer& out, const RunFacts& facts) {
  const DocumentResult& result = facts.result;
  std::string verdict = facts.dryRun ? "would be upgraded" : "upgraded";
  if (!facts.heldBack.empty()) verdict += ", NOT WRITTEN";
  if (result.needsPerson != 0) verdict += fmt::format(", {}", NeedingPerson(result.needsPerson));
  auto to = std::back_inserter(out);
  fmt::format_to(to, "{}: {}, {} of {} changed", Printable(facts.input),
                 Paint(stdout, result.IsComplete() ? Colour::kGreen : Colour::kYellow, verdict),
                 result.totals.changed, Count(result.features, "feature"));
  if (result.totals.created != 0) fmt::format_to(to, ", {} created", result.totals.created);
  if (result.totals.removed != 0) fmt::format_to(to, ", {} removed", result.totals.removed);
  fmt::format_to(to, ", {}\n", Count(result.identifiers, "upgrade"));
}

void AppendAttention(fmt::memory_buffer& out, const std::vector<AttentionItem>& attention, bool all) {
  if (attention.empty()) return;
  fmt::format_to(std::back_inserter(out), "  {}\n{}", Paint(stdout, Colour::kYellow, "Needs a person:"),
                 TextOf(attention, all));
}

void AppendBroughtAlong(fmt::memory_buffer& out,
                        const std::vector<standalone::VersionManager::Needed>& broughtAlong) {
  for (const standalone::VersionManager::Needed& needed : broughtAlong) {
    fmt::format_to(std::back_inserter(out), "  {} was run as well, because {} must not run before it: {}\n",
                   needed.identifier, needed.by, needed.reason);
  }
}

void AppendPlace(fmt::memory_buffer& out, const Destination& destination, bool dryRun, const char* remark) {
  auto to = std::back_inserter(out);
  if (dryRun) {
    fmt::format_to(to, "  Nothing was written (dry run)");
    if (!destination.IsNone())
      fmt::format_to(to, "; the result would go to: {}", Printable(destination.Text()));
    fmt::format_to(to, "\n");
  } else if (!destination.IsNone()) {
    fmt::format_to(to, "  Result: {}{}\n", Printable(destination.Text()), remark);
  }
}

}  // namespace

std::string SummaryOfRun(const RunFacts& facts) {
  fmt::memory_buffer out;
  AppendVerdict(out, facts);
  AppendAttention(out, facts.attention, facts.all);
  AppendDropped(out, facts.document, facts.dropped, facts.hasReport, facts.all);
  if (facts.signOff != nullptr) AppendAnalysis(out, *facts.signOff, facts.all);
  AppendBroughtAlong(out, facts.broughtAlong);
  if (facts.heldBack.empty()) {
    AppendPlace(out, facts.destination, facts.dryRun, "");
  } else {
    fmt::format_to(std::back_inserter(out), "  {}: {}\n",
                   Paint(stdout, Colour::kYellow, "Nothing was written"), facts.heldBack);
  }
  return fmt::to_string(out);
}

std::string SummaryWithoutRun(const FactsWithoutRun& facts) {
  fmt::memory_buffer out;
  std::string words =
      facts.verdict == Verdict::kCurrent ? "already current" : "nothing to do, the chosen upgrades are done";
  if (!facts.attention.empty()) words += fmt::format(", {}", NeedingPerson(facts.attention.size()));
  fmt::format_to(std::back_inserter(out), "{}: {}\n", Printable(facts.input),
                 Paint(stdout, facts.attention.empty() ? Colour::kGreen : Colour::kYellow, words));
  if (!facts.unknown.IsEmpty()) AppendParagraph(out, EachWord(NoteOf(facts.unknown)), 2);
  AppendAttention(out, facts.attention, facts.all);
  if (facts.destination.inPlace) return fmt::to_string(out);
  if (facts.isThere) {
    AppendPlace(out, facts.destination, false, ", exists already");
  } else {
    AppendPlace(out, facts.destination, facts.dryRun, ", copied unchanged");
  }
  return fmt::to_string(out);
}

}  // namespace tool
