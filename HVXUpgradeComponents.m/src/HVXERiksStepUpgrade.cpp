#include "HVXERiksStepUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXRiksStepLT"};

}  // namespace

const HVXUpgradeBinding HVXERiksStepUpgrade::kBindings[] = {
    {kAddConnectionContainer, "Gives the step a connections container beside its loads.", &HVXNotYetMigrated,
     HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXERiksStepUpgrade::kClass = {
    .name = "HVXERiksStepUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXERiksStepUpgrade)
