#include "HVXEConcForceUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXConcentratedForce"};

}  // namespace

const HVXUpgradeBinding HVXEConcForceUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeConcForceBasicComponents,
     "Removes redundant force and moment components and rebuilds the basic components.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEConcForceUpgrade::kClass = {
    .name = "HVXEConcForceUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEConcForceUpgrade)
