#include "HVXEFORUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXNewFieldOutputLT"};

}  // namespace

const HVXUpgradeBinding HVXEFORUpgrade::kBindings[] = {
    {kUpgradeFORPreselectedVarListAttr,
     "Takes the nodal temperature out of the preselected variables of non-thermal cases.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
    {kUpgradeFORBasicComponents, "Brings the basic components to the current layout.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEFORUpgrade::kClass = {
    .name = "HVXEFORUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEFORUpgrade)
