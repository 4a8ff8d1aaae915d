#include "HVXESubmodelBCUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXSubmodelBCLT"};

}  // namespace

const HVXUpgradeBinding HVXESubmodelBCUpgrade::kBindings[] = {
    {kUpgradeSubModelBCBasicComponents, "Rebuilds the basic components and removes repeated parameters.",
     &HVXNotYetMigrated, HVXOnFailure::kLast},
};

constinit const HVXUpgradeClass HVXESubmodelBCUpgrade::kClass = {
    .name = "HVXESubmodelBCUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXESubmodelBCUpgrade)
