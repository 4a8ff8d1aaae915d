#include "HVXEVelocityBCUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXVelocityBCLT"};

}  // namespace

const HVXUpgradeBinding HVXEVelocityBCUpgrade::kBindings[] = {
    {kUpgradeVelocityBCBasicComponents, "Rebuilds the basic components and keeps the six values.",
     &HVXNotYetMigrated, HVXOnFailure::kLast},
};

constinit const HVXUpgradeClass HVXEVelocityBCUpgrade::kClass = {
    .name = "HVXEVelocityBCUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEVelocityBCUpgrade)
