#include "HVXESolStepUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXHacAnaStepSolLT"};

}  // namespace

const HVXUpgradeBinding HVXESolStepUpgrade::kBindings[] = {
    {kUpgradeThermalSolutionStep, "Gives thermal step solutions their physical type.", &HVXNotYetMigrated,
     HVXOnFailure::kLast},
};

constinit const HVXUpgradeClass HVXESolStepUpgrade::kClass = {
    .name = "HVXESolStepUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
    .resultWithoutRun = E_FAIL,
};

HVX_EXPORT_CREATE_TIE(HVXESolStepUpgrade)
