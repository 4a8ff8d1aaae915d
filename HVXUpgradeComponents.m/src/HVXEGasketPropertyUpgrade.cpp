#include "HVXEGasketPropertyUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXGaskPropertyLT"};

}  // namespace

const HVXUpgradeBinding HVXEGasketPropertyUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     &HVXNotYetMigrated, HVXOnFailure::kStop},
    {kUpgradeGasketStabilizationStiffnessUnit,
     "Moves the stabilization stiffness from its component to the gasket section.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEGasketPropertyUpgrade::kClass = {
    .name = "HVXEGasketPropertyUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEGasketPropertyUpgrade)
