#include "HVXEInitialVelocityUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXInitialVelocityLT"};

}  // namespace

const HVXUpgradeBinding HVXEInitialVelocityUpgrade::kBindings[] = {
    {kUpgradeInitialVelocityBasicComponents,
     "Rebuilds the basic components and removes those behind the third son.", &HVXNotYetMigrated,
     HVXOnFailure::kFirst},
};

constinit const HVXUpgradeClass HVXEInitialVelocityUpgrade::kClass = {
    .name = "HVXEInitialVelocityUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEInitialVelocityUpgrade)
