#include "report/CheckText.h"

#include <map>
#include <set>
#include <tuple>

#include "report/FeatureOutput.h"
#include "report/JsonOutput.h"
#include "report/UnknownText.h"
#include "terminal/Table.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using standalone::Finding;
using standalone::FindingKind;

// In the order in which they are told: what a person must look at stands last, where it is seen.
constexpr FindingKind kKinds[] = {FindingKind::kUnknown, FindingKind::kPending, FindingKind::kBeyondUpgrades,
                                  FindingKind::kLeftBehind};

std::string_view MeaningOf(FindingKind kind) {
  switch (kind) {
    case FindingKind::kPending:
      return "an upgrade that the document has not been through yet changes this";
    case FindingKind::kLeftBehind:
      return "its upgrade ran and could not change this";
    case FindingKind::kBeyondUpgrades:
      return "no upgrade changes this; it needs a person";
    case FindingKind::kUnknown:
      return "late types that no part of this program knows; they are kept as they are";
  }
  return {};
}

// Findings of one kind that say the same of several features, in the order in which they were met.
using Alike = std::vector<const Finding*>;

std::vector<Alike> Folded(const std::vector<Finding>& findings, FindingKind kind) {
  std::vector<Alike> folded;
  std::map<std::tuple<std::string_view, std::string_view, std::string_view>, std::size_t> places;
  for (const Finding& finding : findings) {
    if (finding.kind != kind) continue;
    const auto [place, isNew] =
        places.try_emplace({finding.identifier, finding.reason, finding.damage}, folded.size());
    if (isNew) folded.emplace_back();
    folded[place->second].push_back(&finding);
  }
  return folded;
}

void AppendFeatures(fmt::memory_buffer& out, const Alike& alike, bool all) {
  constexpr std::size_t kMost = 5;
  // One more takes no more room than the line that would tell of it.
  const std::size_t shown = all || alike.size() <= kMost + 1 ? alike.size() : kMost;
  for (std::size_t i = 0; i < shown; ++i) {
    fmt::format_to(std::back_inserter(out), "      ");
    AppendLabel(out, *alike[i]->feature);
    out.push_back('\n');
  }
  if (shown < alike.size()) {
    fmt::format_to(std::back_inserter(out), "      and {} more (--all lists them)\n", alike.size() - shown);
  }
}

void AppendAlike(fmt::memory_buffer& out, const Alike& alike, bool all) {
  const Finding& first = *alike.front();
  auto to = std::back_inserter(out);
  fmt::format_to(to, "    {}", Printable(first.Explanation()));
  if (!first.identifier.empty()) fmt::format_to(to, " ({})", first.identifier);
  out.push_back('\n');
  AppendFeatures(out, alike, all);
  // That the pending upgrades are to be run is told by the kind already.
  if (first.kind != FindingKind::kPending || !first.remedy.empty())
    fmt::format_to(to, "      -> {}.\n", Printable(first.NextStep()));
}

void AppendUnknown(fmt::memory_buffer& out, const Finding& finding) {
  auto to = std::back_inserter(out);
  fmt::format_to(to, "    {}: {}, first {}", Word(finding.feature->TypeName()),
                 Count(finding.count, "feature"), finding.feature->id);
  if (!finding.damage.empty())
    fmt::format_to(to, "; {}\n      -> {}.", Printable(finding.damage), Printable(finding.NextStep()));
  out.push_back('\n');
}

void AppendFinding(fmt::memory_buffer& out, const Finding& finding) {
  JsonObject object(out);
  AppendIdentity(object, *finding.feature);
  object.Text("kind", NameOf(finding.kind));
  if (!finding.identifier.empty()) object.Text("upgrade", finding.identifier);
  object.Text("reason", finding.reason);
  if (!finding.damage.empty()) object.Text("damage", finding.damage);
  if (!finding.key.empty()) object.Text("key", finding.key);
  object.Text("nextStep", finding.NextStep());
  if (finding.kind == FindingKind::kUnknown) object.Number("count", finding.count);
  object.Close();
}

}  // namespace

void AppendHeadline(fmt::memory_buffer& out, const CheckedDocument& checked) {
  auto to = std::back_inserter(out);
  const ExitCode code = checked.Code();
  const Colour colour = code == ExitCode::kDone            ? Colour::kGreen
                        : code == ExitCode::kUpgradeNeeded ? Colour::kYellow
                                                           : Colour::kRed;
  fmt::format_to(to, "{}: {}", Printable(checked.file), Paint(stdout, colour, checked.Words()));
  std::set<const standalone::Feature*> features;
  std::size_t count = 0;
  for (const Finding& finding : checked.findings) {
    if (finding.kind == FindingKind::kUnknown) continue;
    features.insert(finding.feature);
    ++count;
  }
  if (count > 0) fmt::format_to(to, ", {} on {}", Count(count, "finding"), Count(features.size(), "feature"));
  fmt::format_to(to, " ({})\n", Count(checked.document->FeatureCount(), "feature"));
  if (!checked.unknown.IsEmpty()) AppendParagraph(out, EachWord(NoteOf(checked.unknown)), 2);
}

void AppendText(fmt::memory_buffer& out, const CheckedDocument& checked, bool all) {
  AppendHeadline(out, checked);
  for (const FindingKind kind : kKinds) {
    const std::vector<Alike> folded = Folded(checked.findings, kind);
    if (folded.empty()) continue;
    fmt::format_to(std::back_inserter(out), "  {}: {}\n", WordsFor(kind), MeaningOf(kind));
    for (const Alike& alike : folded) {
      if (kind != FindingKind::kUnknown) {
        AppendAlike(out, alike, all);
        continue;
      }
      for (const Finding* const each : alike) AppendUnknown(out, *each);
    }
  }
}

void AppendJson(fmt::memory_buffer& out, const CheckedDocument& checked) {
  JsonObject entry(out);
  entry.Name("file", checked.file);
  entry.Text("verdict", checked.Verdict());
  entry.Text("words", checked.Words());
  entry.Number("features", checked.document->FeatureCount());
  AppendUnknown(entry, checked.unknown);
  JsonObject counts(entry.Key("counts"));
  for (const FindingKind kind : kKinds) {
    counts.Number(NameOf(kind),
                  static_cast<std::size_t>(std::ranges::count(checked.findings, kind, &Finding::kind)));
  }
  counts.Close();
  JsonList findings(entry.Key("findings"));
  for (const Finding& finding : checked.findings) AppendFinding(findings.Entry(), finding);
  findings.Close();
  entry.Close();
}

}  // namespace tool
