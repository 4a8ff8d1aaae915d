// Meshes, jobs, solutions and output requests.

#include <algorithm>
#include <optional>
#include <string>

#include "session/Messages.h"
#include "sheet/Explaining.h"

namespace standalone::sheet {
namespace {

using Runs = std::vector<std::pair<std::int64_t, std::int64_t>>;

bool IsOf32Bits(const Value& value) {
  return value.Kind() == ValueKind::kInteger &&
         value.AsInteger() == static_cast<std::int32_t>(value.AsInteger());
}

// The numbers of runs, joined where they can be: 0 for what is numbered or may be, -1 for what has no number.
// Nothing for runs that cannot be read, which no upgrade changes.
std::optional<Runs> Joined(const Fact& fact, bool isReset) {
  if (fact.standing != Standing::kSet || fact.value.Kind() != ValueKind::kList) return std::nullopt;
  const auto runs = fact.value.Entries();
  if (runs.size() % 2 != 0 || !std::ranges::all_of(runs, IsOf32Bits)) return std::nullopt;
  Runs joined;
  for (std::size_t i = 0; i < runs.size(); i += 2) {
    const std::int64_t first = isReset && runs[i].AsInteger() > 0 ? 0 : runs[i].AsInteger();
    const std::int64_t count = runs[i + 1].AsInteger();
    if (count < 0) return std::nullopt;
    if (!joined.empty() && joined.back().first == first && first <= 0) {
      joined.back().second += count;
    } else {
      joined.emplace_back(first, count);
    }
  }
  return joined;
}

bool NumbersReset(Change& change) {
  const Fact* const lost = change.OnlyLost();
  const Fact* const gained = change.OnlyGained();
  if (lost == nullptr || gained == nullptr) return false;
  const std::optional<Runs> was = Joined(*lost, true);
  return was.has_value() && was == Joined(*gained, false) && change.All();
}

const Fact* Now(const Change& change, std::string_view quantity) {
  return change.after.Find(*change.is, quantity);
}

bool IntervalFromFrequency(Change& change) {
  const Fact* const frequency = Now(change, "restart frequency");
  const Fact* const gained = change.OnlyGained();
  if (frequency == nullptr || gained == nullptr || frequency->standing != Standing::kSet ||
      frequency->value.AsInteger() <= 1)
    return false;
  return IsNumber(*gained, static_cast<double>(frequency->value.AsInteger())) && change.All();
}

bool ModeFromFrequency(Change& change) {
  const Fact* const frequency = Now(change, "restart frequency");
  const Fact* const gained = change.OnlyGained();
  return frequency != nullptr && frequency->standing == Standing::kSet && gained != nullptr &&
         frequency->value.AsInteger() > 1 && IsText(*gained, "increments") && change.All();
}

// The case that the job, or the container of jobs, is for.
const Subject* CaseOf(const Change& change) {
  const Fact* const linked = Now(change, "case");
  const Feature* analysisCase = linked == nullptr ? nullptr : TargetOf(*linked);
  if (analysisCase == nullptr) analysisCase = change.is->analysisCase;
  return analysisCase == nullptr ? nullptr : change.after.Find(analysisCase->id);
}

bool IsExplicitWithoutFrequency(const Change& change) {
  const Fact* const frequency = Now(change, "restart frequency");
  const Subject* const analysisCase = CaseOf(change);
  if (frequency == nullptr || !IsNumber(*frequency, 0) || analysisCase == nullptr) return false;
  const Fact* const type = change.after.Find(*analysisCase, "analysis type");
  return type != nullptr && IsText(*type, "explicit dynamics");
}
bool RestartOn(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return IsExplicitWithoutFrequency(change) && gained != nullptr && IsFlag(*gained, true) && change.All();
}
bool RestartInIntervals(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return IsExplicitWithoutFrequency(change) && gained != nullptr && IsText(*gained, "intervals") &&
         change.All();
}

bool FullAnalysis(Change& change) {
  const Fact* const lost = change.OnlyLost();
  const Fact* const gained = change.OnlyGained();
  return lost != nullptr && gained != nullptr && IsText(*lost, "From InputFile") &&
         IsText(*gained, "Full Analysis") && change.All();
}
bool NoInputFile(Change& change) {
  const Fact* const run = change.before.Find(*change.was, "run type");
  return run != nullptr && IsText(*run, "From InputFile") && BecomesFlag<false>(change);
}

bool StaticLinear(Change& change) {
  const Fact* const gained = change.OnlyGained();
  const Feature* son = change.is->feature->firstSon;
  while (son != nullptr && son->TypeName() != "HVXHacSolutionLT") son = son->nextSibling;
  return son != nullptr && gained != nullptr && IsText(*gained, "MECHANICAL_STATIC_LINEAR") && change.All();
}
bool ThermalSolution(Change& change) {
  const Fact* const type = Now(change, "result type");
  const Fact* const gained = change.OnlyGained();
  return type != nullptr && IsText(*type, "thermal") && gained != nullptr &&
         IsText(*gained, "THERMAL_STATIC_LINEAR") && change.All();
}
bool SolvedCase(Change& change) {
  const Fact* const working = Now(change, "working case");
  const Feature* expected = working == nullptr ? nullptr : TargetOf(*working);
  if (expected == nullptr) expected = change.is->analysisCase;
  const Fact* const gained = change.OnlyGained();
  return gained != nullptr && AreSame(TargetOf(*gained), expected) && change.All();
}

bool IsReplacedRequest(const Change& change) {
  return change.was->lateType == "HVXFieldOutputLT";
}
bool OnWholeModel(Change& change) {
  if (!IsReplacedRequest(change) || change.gained.size() > 1) return false;
  const Fact* const now = Now(change, "support");
  const Feature* const target = now == nullptr ? nullptr : TargetOf(*now);
  return target != nullptr && target->type->IsAnalysisModel() && change.All();
}
bool Preselected(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return IsReplacedRequest(change) && gained != nullptr && IsText(*gained, "preselected") && change.All();
}
bool ActsLater(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return IsReplacedRequest(change) && gained != nullptr && IsText(*gained, "later steps") && change.All();
}

// Non-thermal cases have no nodal temperature.
std::string WithoutTemperature(std::string list) {
  constexpr std::string_view kLast = ",NT";
  ReplaceAll(list, ",NT,", ",");
  if (list.starts_with("NT,")) list.erase(0, std::string_view("NT,").size());
  if (list.ends_with(kLast)) list.erase(list.size() - kLast.size());
  return list;
}

// Preselected variables of cases that are not thermal.
bool MayLackTemperature(const Change& change) {
  const Fact* const selection = Now(change, "variable selection");
  const Feature* const place = change.is->analysisCase;
  const Subject* const analysisCase = place == nullptr ? nullptr : change.after.Find(place->id);
  if (selection == nullptr || analysisCase == nullptr || !IsText(*selection, "preselected")) return false;
  const Fact* const type = change.after.Find(*analysisCase, "analysis type");
  return type != nullptr && !IsText(*type, "thermal");
}

bool DefaultVariables(Change& change) {
  const std::optional<std::string> all = Messages::Find("HVXAnalysisStep", "PreSelDefault.Title");
  const Fact* const gained = change.OnlyGained();
  if (!IsReplacedRequest(change) || !all || gained == nullptr) return false;
  return (IsText(*gained, *all) ||
          (MayLackTemperature(change) && IsText(*gained, WithoutTemperature(*all)))) &&
         change.All();
}
bool NoTemperature(Change& change) {
  const Fact* const lost = change.OnlyLost();
  const Fact* const gained = change.OnlyGained();
  return MayLackTemperature(change) && lost != nullptr && gained != nullptr &&
         lost->standing == Standing::kSet &&
         IsText(*gained, WithoutTemperature(std::string(lost->value.AsString()))) && change.All();
}

constexpr std::string_view kJobs = "job, settings of new jobs";
constexpr std::string_view kRestart = "UpgradeJobRestartData";
constexpr std::string_view kCarriedOver =
    "a restart frequency above 1 is carried over to the restart interval";
constexpr std::string_view kSwitchedOn = "restart is switched on in explicit dynamics";
constexpr std::string_view kInputFile = "UpgradeJobForFromInputFile";
constexpr std::string_view kFull = "a job that ran an input file becomes a full analysis";
constexpr std::string_view kRequest = "UpgradeFieldOutputRequest";
constexpr std::string_view kWholeModel =
    "the new request is for the whole model, by default, and for later steps";
constexpr std::string_view kNumbering = "RestNodeAndElementUserNumber";
constexpr std::string_view kNumbered = "elements and nodes are to be renumbered";
constexpr std::string_view kSolution = "UpgradeAnalysisCase";
constexpr std::string_view kSolved = "the solution is linked to the case that it solves";

constexpr Intention kIntentions[] = {
    {kNumbering, "mesh", "element numbers", Meaning::kOnPurpose, kNumbered, NumbersReset},
    {kNumbering, "mesh", "node numbers", Meaning::kOnPurpose, kNumbered, NumbersReset},
    {kRestart, kJobs, "restart interval", Meaning::kSame, kCarriedOver, IntervalFromFrequency},
    {kRestart, kJobs, "restart mode", Meaning::kSame, kCarriedOver, ModeFromFrequency},
    {kRestart, kJobs, "restart mode", Meaning::kOnPurpose, kSwitchedOn, RestartInIntervals},
    {kRestart, kJobs, "restart written", Meaning::kOnPurpose, kSwitchedOn, RestartOn},
    {kInputFile, kJobs, "run type", Meaning::kOnPurpose, kFull, FullAnalysis},
    {kInputFile, kJobs, "runs an input file", Meaning::kOnPurpose, kFull, NoInputFile},
    {"UpgradeJobMemoryUnit", kJobs, "memory unit", Meaning::kOnPurpose,
     "the memory unit code is set to 1, the limit stays the number that it is", BecomesNumber<1>},
    {kSolution, "analysis case", "physical type", Meaning::kOnPurpose,
     "a case with a solution gets a physical type", StaticLinear},
    {kSolution, "solution", "case", Meaning::kSame, kSolved, SolvedCase},
    {kSolution, "solution", "mesh of", Meaning::kSame, kSolved, SolvedCase},
    {"UpgradeThermalSolutionStep", "solution of a step", "physical type", Meaning::kOnPurpose,
     "thermal solutions get their physical type", ThermalSolution},
    {kRequest, "field output request", "support", Meaning::kOnPurpose, kWholeModel, OnWholeModel},
    {kRequest, "field output request", "variable selection", Meaning::kOnPurpose, kWholeModel, Preselected},
    {kRequest, "field output request", "variables", Meaning::kOnPurpose, kWholeModel, DefaultVariables},
    {kRequest, "field output request", "also acts in", Meaning::kOnPurpose, kWholeModel, ActsLater},
    {"UpgradeFORPreselectedVarListAttr", "field output request", "variables", Meaning::kOnPurpose,
     "non-thermal cases have no nodal temperature to write", NoTemperature},
};

}  // namespace

std::span<const Intention> SettingIntentions() {
  return kIntentions;
}

}  // namespace standalone::sheet
