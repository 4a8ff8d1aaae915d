#include "HVXETemperatureBCUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXTemperatureLT"};

}  // namespace

const HVXUpgradeBinding HVXETemperatureBCUpgrade::kBindings[] = {
    {kUpgradeTemperatureBCBasicComponents, "Moves the magnitude from its parameter to the temperature.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXETemperatureBCUpgrade::kClass = {
    .name = "HVXETemperatureBCUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXETemperatureBCUpgrade)
