#include "commands/CheckCommand.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "archive/DocumentSearch.h"
#include "check/Conformity.h"
#include "document/Reading.h"
#include "report/FeatureOutput.h"
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
      return "no upgrade changes this; it takes a person";
    case FindingKind::kUnknown:
      return "late types that no part of this program knows; they are kept as they are";
  }
  return {};
}

struct Checked {
  std::string file;
  standalone::DocumentPtr document;
  std::vector<Finding> findings;
  std::vector<std::string> unknown;  // recorded, but of a later release

  [[nodiscard]] bool HasPending() const {
    return std::ranges::any_of(findings,
                               [](const Finding& each) { return each.kind == FindingKind::kPending; });
  }
  [[nodiscard]] bool NeedsPerson() const {
    return std::ranges::any_of(findings, [](const Finding& each) { return each.NeedsPerson(); });
  }
  [[nodiscard]] std::string_view Verdict() const {
    if (!unknown.empty()) return "newer than this program";
    return Code() == ExitCode::kDone ? "conforms" : "does not conform";
  }
  [[nodiscard]] ExitCode Code() const {
    if (!unknown.empty()) return ExitCode::kNewer;
    if (NeedsPerson()) return ExitCode::kNeedsPerson;
    return HasPending() ? ExitCode::kUpgradeNeeded : ExitCode::kDone;
  }
};

// What a later release calls current is not known here, so its documents are not looked at.
Checked Check(const std::string& file, const standalone::VersionManager& manager) {
  Checked checked{file, ReadWithProgress(file), {}, {}};
  checked.unknown = manager.Unknown(*checked.document.Get());
  if (checked.unknown.empty()) checked.findings = standalone::CheckConformity(*checked.document.Get());
  return checked;
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

void AppendHeadline(fmt::memory_buffer& out, const Checked& checked) {
  auto to = std::back_inserter(out);
  const ExitCode code = checked.Code();
  const Colour colour = code == ExitCode::kDone            ? Colour::kGreen
                        : code == ExitCode::kUpgradeNeeded ? Colour::kYellow
                                                           : Colour::kRed;
  fmt::format_to(to, "{}: {}", Printable(checked.file), Paint(stdout, colour, checked.Verdict()));
  std::set<const standalone::Feature*> features;
  std::size_t count = 0;
  for (const Finding& finding : checked.findings) {
    if (finding.kind == FindingKind::kUnknown) continue;
    features.insert(finding.feature);
    ++count;
  }
  if (count > 0) fmt::format_to(to, ", {} on {}", Count(count, "finding"), Count(features.size(), "feature"));
  fmt::format_to(to, " ({})\n", Count(checked.document->FeatureCount(), "feature"));
}

void AppendText(fmt::memory_buffer& out, const Checked& checked, bool all) {
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

void AppendFinding(fmt::memory_buffer& out, const Finding& finding) {
  JsonObject object(out);
  AppendIdentity(object, *finding.feature);
  object.Text("kind", NameOf(finding.kind));
  if (!finding.identifier.empty()) object.Text("identifier", finding.identifier);
  object.Text("reason", finding.reason);
  if (!finding.damage.empty()) object.Text("damage", finding.damage);
  if (!finding.key.empty()) object.Text("key", finding.key);
  object.Text("nextStep", finding.NextStep());
  if (finding.kind == FindingKind::kUnknown) object.Number("count", finding.count);
  object.Close();
}

void AppendJson(fmt::memory_buffer& out, const Checked& checked) {
  JsonObject entry(out);
  entry.Text("file", checked.file);
  entry.Text("verdict", checked.Verdict());
  entry.Number("features", checked.document->FeatureCount());
  entry.Texts("unknown", checked.unknown);
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

void Print(const fmt::memory_buffer& out) {
  Say({out.data(), out.size()});
  std::fflush(stdout);
}

}  // namespace

ExitCode RunCheck(const CheckArguments& arguments, const standalone::VersionManager& manager) {
  const FoundDocuments found = FindDocuments(arguments.sources);
  ExitCode code = TellProblems(found);
  fmt::memory_buffer out;
  JsonObject top(out);
  top.Text("check", "hvxupgrade");
  top.Number("version", kJsonVersion);
  JsonList documents(top.Key("documents"));
  for (const auto& [file, beneath] : found.documents) {
    try {
      const Checked checked = Check(file, manager);
      code = MoreSerious(code, checked.Code());
      if (arguments.json) {
        AppendJson(documents.Entry(), checked);
        continue;
      }
      fmt::memory_buffer text;
      AppendText(text, checked, arguments.all);
      Print(text);
    } catch (const standalone::DocumentError& error) {
      code = MoreSerious(code, ExitCodeOf(error));
      Complain(error.what());
      if (arguments.json) AppendUnreadable(documents.Entry(), file, error);
    }
  }
  if (!arguments.json) return code;
  documents.Close();
  top.Close();
  out.push_back('\n');
  Print(out);
  return code;
}

}  // namespace tool
