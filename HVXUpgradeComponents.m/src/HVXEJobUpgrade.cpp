#include "HVXEJobUpgrade.h"

#include "HVXUpgradeIdentifiers.h"
#include "modeler/VLMISpecObject.h"
#include "workbench/HVXIAnalysisCase.h"
#include "workbench/HVXIJob.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXJobLT", "HVXJobContainerLT"};

const VLMUnicodeString kFullAnalysis("Full Analysis");
const VLMUnicodeString kFromInputFile("From InputFile");

constexpr std::int32_t kExplicitDynamics = 3;  // the analysis type with restart settings of its own
constexpr std::int32_t kRestartAtIntervals = 3;
constexpr std::int32_t kRestartAtIncrements = 4;
constexpr std::int32_t kCurrentMemoryUnit = 1;

}  // namespace

const HVXUpgradeBinding HVXEJobUpgrade::kBindings[] = {
    {kUpgradeJobRestartData,
     "Carries a restart frequency above 1 over to the restart interval; switches restart on in explicit "
     "dynamics.",
     Own<&HVXEJobUpgrade::MigrateRestartData>, HVXOnFailure::kStop},
    {kUpgradeJobForFromInputFile, "Makes a job that ran an input file a full analysis.",
     Own<&HVXEJobUpgrade::MigrateFromInputFile>, HVXOnFailure::kStop},
    {kUpgradeJobMemoryUnit, "Sets the memory unit code to 1.", Own<&HVXEJobUpgrade::SetMemoryUnit>,
     HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEJobUpgrade::kClass = {
    .name = "HVXEJobUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEJobUpgrade::MigrateRestartData() {
  const VLMISpecObject_var spSpec(Feature());
  const HVXIJob_var spJob(spSpec);
  if (spSpec == NULL_var || spJob == NULL_var) return E_NOINTERFACE;

  std::int32_t frequency = 0;
  if (const HRESULT read = spJob->GetRestartFrequency(frequency); Failed(read)) return read;
  if (frequency > 1) {
    if (const HRESULT written = spJob->SetRestartInterval(frequency); Failed(written)) return written;
    static_cast<void>(spJob->SetRestartMode(kRestartAtIncrements));
  }
  return ApplyRestartRuleOfAnalysisType();
}

HRESULT HVXEJobUpgrade::ApplyRestartRuleOfAnalysisType() {
  const HVXIJob_var spJob(Feature());
  if (spJob == NULL_var) return E_NOINTERFACE;

  VLMBaseUnknown_var spCaseOfJob;
  if (Failed(spJob->GetAnalysisCase(spCaseOfJob)) || spCaseOfJob == NULL_var) return E_FAIL;
  const HVXIAnalysisCase_var spCase(spCaseOfJob);
  if (spCase == NULL_var) return E_FAIL;
  std::int32_t analysisType = 0;
  static_cast<void>(spCase->GetAnalysisType(analysisType));

  std::int32_t frequency = 0;
  HRESULT result = spJob->GetRestartFrequency(frequency);
  if (Failed(result)) return result;
  if (analysisType == kExplicitDynamics && frequency == 0) {
    result = spJob->SetRestartFlag(1);
    if (Succeeded(result)) result = spJob->SetRestartMode(kRestartAtIntervals);
  }
  return result;
}

HRESULT HVXEJobUpgrade::MigrateFromInputFile() {
  const HVXIJob_var spJob(Feature());
  if (spJob == NULL_var) return E_NOINTERFACE;

  VLMUnicodeString runType;
  static_cast<void>(spJob->GetRunType(runType));
  if (runType.IsNull() || !(runType == kFromInputFile)) return S_OK;
  static_cast<void>(spJob->SetInputFileFlag(0));
  return spJob->SetRunType(kFullAnalysis);
}

HRESULT HVXEJobUpgrade::SetMemoryUnit() {
  const HVXIJob_var spJob(Feature());
  if (spJob == NULL_var) return E_NOINTERFACE;
  // Sets the code and converts no value, on purpose.
  static_cast<void>(spJob->SetMemoryUnit(kCurrentMemoryUnit));
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEJobUpgrade)
