#include "HVXEHeatTransferStepUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXHeatTransferStepLT"};

}  // namespace

const HVXUpgradeBinding HVXEHeatTransferStepUpgrade::kBindings[] = {
    {kAddConnectionContainer, "Gives the step a connections container beside its loads.", &HVXNotYetMigrated,
     HVXOnFailure::kStop},
    {kUpgFromSpecToComp, "Moves the incrementation values from their parameters to the step.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEHeatTransferStepUpgrade::kClass = {
    .name = "HVXEHeatTransferStepUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEHeatTransferStepUpgrade)
