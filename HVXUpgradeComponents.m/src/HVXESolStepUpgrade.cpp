#include "HVXESolStepUpgrade.h"

#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXAnalysisEntityUtils.h"
#include "workbench/HVXIHalvexResultStep.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXHacAnaStepSolLT"};

const VLMUnicodeString kPhysicalType("THERMAL_STATIC_LINEAR");

constexpr std::int32_t kThermalResult = 3;

}  // namespace

const HVXUpgradeBinding HVXESolStepUpgrade::kBindings[] = {
    {kUpgradeThermalSolutionStep, "Gives thermal step solutions their physical type.",
     Own<&HVXESolStepUpgrade::SetThermalPhysicalType>, HVXOnFailure::kLast},
};

constinit const HVXUpgradeClass HVXESolStepUpgrade::kClass = {
    .name = "HVXESolStepUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
    .resultWithoutRun = E_FAIL,
};

HRESULT HVXESolStepUpgrade::SetThermalPhysicalType() {
  const VLMISpecObject_var spSpec(Feature());
  const HVXIHalvexResultStep_var spResultStep(spSpec);
  if (spResultStep == NULL_var) return S_OK;

  std::int32_t type = 0;
  static_cast<void>(spResultStep->GetResultStepType(type));
  if (type != kThermalResult) return S_OK;
  return HVXAnalysisEntityUtils::SetPhysicalTypeToSpecObject(spSpec, kPhysicalType);
}

HVX_EXPORT_CREATE_TIE(HVXESolStepUpgrade)
