#include "HVXEPretensionPropUpgrade.h"

#include "HVXSharedUpgrades.h"
#include "HVXUpgradeIdentifiers.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXPreTensionPropertyLT"};

}  // namespace

const HVXUpgradeBinding HVXEPretensionPropUpgrade::kBindings[] = {
    {kUpgradeBasicComponents, "Brings the basic components to the current layout.",
     Shared<&HVXRunHostUpgrade>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEPretensionPropUpgrade::kClass = {
    .name = "HVXEPretensionPropUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEPretensionPropUpgrade)
