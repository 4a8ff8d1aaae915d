#include "HVXEGeneralStaticStepUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXGeneralStaticStepLT"};

}  // namespace

const HVXUpgradeBinding HVXEGeneralStaticStepUpgrade::kBindings[] = {
    {kAddConnectionContainer, "Gives the step a connections container beside its loads.", &HVXNotYetMigrated,
     HVXOnFailure::kStop},
    {kUpgFromSpecToComp, "Moves the incrementation values from their parameters to the step.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEGeneralStaticStepUpgrade::kClass = {
    .name = "HVXEGeneralStaticStepUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEGeneralStaticStepUpgrade)
