#include "HVXEInitialTempUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXInitialTemperatureLT"};

}  // namespace

const HVXUpgradeBinding HVXEInitialTempUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on a solid to the part's main body.", &HVXNotYetMigrated,
     HVXOnFailure::kStop},
    {kUpgradeInitialTemperatureBasicComponents, "Moves the magnitude from its parameter to the temperature.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
    {kUpgradeTempMidside, "Switches midside node temperatures on.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEInitialTempUpgrade::kClass = {
    .name = "HVXEInitialTempUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEInitialTempUpgrade)
