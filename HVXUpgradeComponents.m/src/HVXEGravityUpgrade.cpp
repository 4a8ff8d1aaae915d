#include "HVXEGravityUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXGravity"};

}  // namespace

const HVXUpgradeBinding HVXEGravityUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on a solid to the part's main body.", &HVXNotYetMigrated,
     HVXOnFailure::kStop},
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeGravityBasicComponents, "Moves the three components from their parameters to the gravity.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEGravityUpgrade::kClass = {
    .name = "HVXEGravityUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEGravityUpgrade)
