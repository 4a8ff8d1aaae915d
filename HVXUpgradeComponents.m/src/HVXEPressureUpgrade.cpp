#include "HVXEPressureUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXPressure"};

}  // namespace

const HVXUpgradeBinding HVXEPressureUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradePressureBasicComponents, "Moves the magnitude from its parameter to the pressure.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEPressureUpgrade::kClass = {
    .name = "HVXEPressureUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEPressureUpgrade)
