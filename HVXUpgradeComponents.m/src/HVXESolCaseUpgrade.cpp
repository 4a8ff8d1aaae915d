#include "HVXESolCaseUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXHacSolutionLT"};

}  // namespace

const HVXUpgradeBinding HVXESolCaseUpgrade::kBindings[] = {
    {kUpgradeAnalysisCase, "Gives the solution's owner its physical type and the solution its analysis case.",
     &HVXNotYetMigrated, HVXOnFailure::kLast},
};

constinit const HVXUpgradeClass HVXESolCaseUpgrade::kClass = {
    .name = "HVXESolCaseUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
    .resultWithoutRun = E_FAIL,
};

HVX_EXPORT_CREATE_TIE(HVXESolCaseUpgrade)
