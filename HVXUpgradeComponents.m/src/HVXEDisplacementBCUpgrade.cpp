#include "HVXEDisplacementBCUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXDisplacementBC"};

}  // namespace

const HVXUpgradeBinding HVXEDisplacementBCUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeDispBCBasicComponents,
     "Removes redundant translation components and rebuilds the basic components.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEDisplacementBCUpgrade::kClass = {
    .name = "HVXEDisplacementBCUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEDisplacementBCUpgrade)
