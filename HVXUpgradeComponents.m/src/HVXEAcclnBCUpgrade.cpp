#include "HVXEAcclnBCUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXAccelerationBCLT"};

}  // namespace

const HVXUpgradeBinding HVXEAcclnBCUpgrade::kBindings[] = {
    {kUpgradeAcclnBCBasicComponents,
     "Moves the six components stored under velocity names into the motion condition.", &HVXNotYetMigrated,
     HVXOnFailure::kLast},
};

constinit const HVXUpgradeClass HVXEAcclnBCUpgrade::kClass = {
    .name = "HVXEAcclnBCUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEAcclnBCUpgrade)
