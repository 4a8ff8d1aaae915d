#include "HVXETempHistoryUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXTemperatureHistoryLT"};

}  // namespace

const HVXUpgradeBinding HVXETempHistoryUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on a solid to the part's main body.", &HVXNotYetMigrated,
     HVXOnFailure::kStop},
    {kUpgradeTemperatureHistoryBasicComponents, "Moves the magnitude from its parameter to the temperature.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
    {kUpgradeEndIncrementOption, "Sets the end increment option to its default.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
    {kUpgradeTempMidside, "Switches midside node temperatures on.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXETempHistoryUpgrade::kClass = {
    .name = "HVXETempHistoryUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXETempHistoryUpgrade)
