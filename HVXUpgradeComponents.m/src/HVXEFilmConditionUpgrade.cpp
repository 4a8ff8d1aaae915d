#include "HVXEFilmConditionUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXFilmCondition"};

}  // namespace

const HVXUpgradeBinding HVXEFilmConditionUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeFilmConditionBasicComponents,
     "Moves the reference temperature from its parameter to the film condition.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
    {kUpgradeFilmConditionInvertSurfaceBasicComponents, "Brings the basic components to the current layout.",
     Shared<&HVXRunHostUpgrade>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEFilmConditionUpgrade::kClass = {
    .name = "HVXEFilmConditionUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEFilmConditionUpgrade)
