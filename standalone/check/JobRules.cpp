// Jobs and solutions.

#include "analysis/Frame.h"
#include "check/Rules.h"

namespace standalone {
namespace {

using check::HasAttribute;
using check::IntegerOf;

const Key kAnalysisCase("AnalysisCase");

constexpr DamageKind kNoCase{"there is no case that it could be the solution of",
                             "Give the solution its case as {}"};
constexpr DamageKind kOtherThanCase{"{} leads to no case", "Give the solution its case as {}"};
constexpr DamageKind kNoCaseOfJob{"{} is missing", "Give the job its case as {}"};
constexpr DamageKind kForeignCase{"{} links to no case of this product",
                                  "Give the job a case whose \"Solver\" is \"Halvex\" as {}"};

Verdict FromInputFile(Feature& feature, const Survey& /*survey*/) {
  static const Key runType("RunType");
  return OutdatedIf(check::TextOf(feature, runType) == "From InputFile");
}

Feature* CaseOf(Feature& feature) {
  Feature* const linked = LinkedFeature(feature, kAnalysisCase);
  return linked == nullptr && feature.type->IsAnalysisSet() ? CaseAbove(feature) : linked;
}

// How a job restarts depends on its case.
Verdict Restart(Feature& feature, const Survey& /*survey*/) {
  static const Key frequency("RestartFrequency");
  static const Key interval("RestartInterval");
  static const Key flag("RestartFlag");
  static const Key analysisType("AnalysisType");
  constexpr std::int32_t kExplicitDynamics = 3;
  Feature* const analysisCase = CaseOf(feature);
  if (analysisCase == nullptr) return Damaged(kNoCaseOfJob, "AnalysisCase");
  if (!IsOfKind(*analysisCase, kind::kAnalysisCase) || !check::IsOfThisProduct(*analysisCase))
    return Damaged(kForeignCase, "AnalysisCase");
  std::int32_t restarts = 0;
  if (Failed(ReadAttribute(feature, frequency, restarts)) && HasAttribute(feature, frequency))
    return Damaged(check::kNoInteger, frequency.Text());
  if (restarts > 1) return OutdatedIf(!HasAttribute(feature, interval));
  return OutdatedIf(restarts == 0 && IntegerOf(*analysisCase, analysisType, 0) == kExplicitDynamics &&
                    !HasAttribute(feature, flag));
}

Verdict MemoryUnit(Feature& feature, const Survey& /*survey*/) {
  static const Key unit("MemoryUnit");
  return OutdatedIf(IntegerOf(feature, unit, 0) != 1);
}

Verdict ThermalStep(Feature& feature, const Survey& /*survey*/) {
  static const Key type("ResultStepType");
  constexpr std::int32_t kThermal = 3;
  return OutdatedIf(IntegerOf(feature, type, 0) == kThermal &&
                    NameTable::Text(feature.physicalType) != "THERMAL_STATIC_LINEAR");
}

Verdict WithoutCase(Feature& feature, const Survey& /*survey*/) {
  static const Key workingCase("WorkingCase");
  if (LinkedFeature(feature, kAnalysisCase) != nullptr) return Conforms();
  const Feature* const working = LinkedFeature(feature, workingCase);
  if (working != nullptr && !IsOfKind(*working, kind::kAnalysisCase))
    return Damaged(kOtherThanCase, workingCase.Text());
  return working != nullptr || CaseAbove(feature) != nullptr ? Outdated()
                                                             : Damaged(kNoCase, workingCase.Text());
}

constexpr std::string_view kJobs = "HVXJobLT HVXJobContainerLT";

constexpr ConformityRule kRules[] = {
    {kJobs, "UpgradeJobRestartData", "its restart settings are not those of its case and frequency", Restart},
    {kJobs, "UpgradeJobForFromInputFile", "jobs run no input files any more", FromInputFile},
    {kJobs, "UpgradeJobMemoryUnit", "the code of its memory unit is not 1", MemoryUnit},
    {"HVXHacAnaStepSolLT", "UpgradeThermalSolutionStep", "a thermal solution has another physical type",
     ThermalStep},
    {"HVXHacSolutionLT", "UpgradeAnalysisCase", "its analysis case is missing", WithoutCase},
};

}  // namespace

std::span<const ConformityRule> JobRules() {
  return kRules;
}

}  // namespace standalone
