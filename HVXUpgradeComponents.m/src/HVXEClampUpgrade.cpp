#include "HVXEClampUpgrade.h"

#include "HVXSharedUpgrades.h"
#include "HVXUpgradeIdentifiers.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXClamp"};

}  // namespace

const HVXUpgradeBinding HVXEClampUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEClampUpgrade::kClass = {
    .name = "HVXEClampUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEClampUpgrade)
