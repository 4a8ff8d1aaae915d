#include "Summary.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <set>

#include "Failures.h"
#include "Terminal.h"

namespace tool {
namespace {

constexpr std::size_t kMostFailuresTold = 20;

void AppendVerdict(fmt::memory_buffer& out, const RunFacts& facts) {
  const DocumentResult& result = facts.result;
  const char* const done = facts.dryRun ? "would be upgraded" : "upgraded";
  const std::string verdict = result.failures == 0
                                  ? Paint(stdout, Colour::kGreen, done)
                                  : Paint(stdout, Colour::kYellow,
                                          fmt::format("{} with {}", done, Count(result.failures, "failure")));
  auto to = std::back_inserter(out);
  fmt::format_to(to, "{}: {}, {} of {} changed", Printable(facts.input), verdict, result.totals.changed,
                 Count(result.features, "feature"));
  if (result.totals.created != 0) fmt::format_to(to, ", {} created", result.totals.created);
  if (result.totals.removed != 0) fmt::format_to(to, ", {} removed", result.totals.removed);
  fmt::format_to(to, ", {}\n", Count(result.identifiers, "identifier"));
}

std::string CodeWithName(HRESULT code) {
  const std::string_view name = CodeName(code);
  return name.empty() ? CodeText(code) : fmt::format("{} ({})", CodeText(code), name);
}

void AppendFailures(fmt::memory_buffer& out, const RunFacts& facts) {
  if (facts.result.failures == 0) return;
  auto to = std::back_inserter(out);
  fmt::format_to(to, "  Needs a person:\n");
  std::set<HRESULT> codes;
  std::size_t told = 0;
  for (const standalone::DocumentOutcome& outcome : facts.comparison.failedDocumentUpgrades) {
    fmt::format_to(to, "    {} on the whole document: {}\n", outcome.identifier, CodeWithName(outcome.code));
    codes.insert(outcome.code);
  }
  for (const standalone::FeatureOutcome& outcome : facts.comparison.failed) {
    codes.insert(outcome.code);
    if (++told > kMostFailuresTold) continue;
    const standalone::Feature& feature = *outcome.feature;
    const std::string_view name = feature.externalName.empty() ? feature.name : feature.externalName;
    fmt::format_to(to, "    {} {} (id {}): {} in {}\n", Word(feature.TypeName()), Quoted(name), feature.id,
                   CodeWithName(outcome.code),
                   fmt::join(Suspects(facts.manager, facts.run.identifiers, outcome), " or "));
  }
  if (told > kMostFailuresTold)
    fmt::format_to(to, "    and {} more; --report lists all\n", told - kMostFailuresTold);
  for (const HRESULT code : codes) fmt::format_to(to, "    {}: {}\n", CodeWithName(code), AdviceFor(code));
}

void AppendTotals(fmt::memory_buffer& out, const std::map<std::string, Totals>& byType) {
  if (byType.empty()) return;
  std::size_t width = std::string_view("Late type").size();
  for (const auto& [type, totals] : byType) width = std::max(width, Word(type).size());
  auto to = std::back_inserter(out);
  fmt::format_to(to, "  {:<{}}  {:>9} {:>9} {:>9} {:>9} {:>9}\n", "Late type", width, "concerned", "changed",
                 "created", "removed", "failed");
  const auto number = [](std::size_t count) { return count == 0 ? std::string("-") : std::to_string(count); };
  for (const auto& [type, totals] : byType) {
    fmt::format_to(to, "  {:<{}}  {:>9} {:>9} {:>9} {:>9} {:>9}\n", Word(type), width,
                   number(totals.concerned), number(totals.changed), number(totals.created),
                   number(totals.removed), number(totals.failed));
  }
}

void AppendPlace(fmt::memory_buffer& out, const Destination& destination, bool dryRun, const char* remark) {
  auto to = std::back_inserter(out);
  if (dryRun) {
    fmt::format_to(to, "  Nothing was written (dry run)");
    if (destination.file) fmt::format_to(to, "; the result would go to: {}", Printable(destination.Text()));
    fmt::format_to(to, "\n");
  } else if (destination.file) {
    fmt::format_to(to, "  Result: {}{}\n", Printable(destination.Text()), remark);
  }
}

}  // namespace

std::string SummaryOfRun(const RunFacts& facts) {
  fmt::memory_buffer out;
  AppendVerdict(out, facts);
  AppendFailures(out, facts);
  AppendTotals(out, facts.comparison.byType);
  AppendPlace(out, facts.destination, facts.dryRun, "");
  return fmt::to_string(out);
}

std::string SummaryWithoutRun(const std::string& input, Verdict verdict, const Destination& destination,
                              bool dryRun) {
  fmt::memory_buffer out;
  fmt::format_to(std::back_inserter(out), "{}: {}\n", Printable(input),
                 Paint(stdout, Colour::kGreen,
                       verdict == Verdict::kCurrent ? "already current"
                                                    : "nothing to do, the chosen upgrades are done"));
  if (!destination.inPlace) AppendPlace(out, destination, dryRun, ", copied unchanged");
  return fmt::to_string(out);
}

}  // namespace tool
