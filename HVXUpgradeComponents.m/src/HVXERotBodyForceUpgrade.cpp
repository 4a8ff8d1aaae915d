#include "HVXERotBodyForceUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXRotationalBodyForce"};

}  // namespace

const HVXUpgradeBinding HVXERotBodyForceUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on a solid to the part's main body.", &HVXNotYetMigrated,
     HVXOnFailure::kStop},
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeBasicComponents, "Brings the basic components to the current layout.",
     Shared<&HVXRunHostUpgrade>, HVXOnFailure::kStop},
    {kUpgradeRBFAxisData, "Stores the rotation axis together with the part that it belongs to.",
     &HVXNotYetMigrated, HVXOnFailure::kStop},
    {kUpgradeRotationalBodyForceBasicComponents,
     "Moves angular velocity and acceleration from their parameters to the force.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXERotBodyForceUpgrade::kClass = {
    .name = "HVXERotBodyForceUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXERotBodyForceUpgrade)
