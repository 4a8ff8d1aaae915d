#include "HVXEShellSectionEnhUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXShellSectionEnhLT"};

}  // namespace

const HVXUpgradeBinding HVXEShellSectionEnhUpgrade::kBindings[] = {
    {kUpgradeMatOrientAngleToRadians, "Turns the material orientation angle from degrees into radians.",
     &HVXNotYetMigrated, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEShellSectionEnhUpgrade::kClass = {
    .name = "HVXEShellSectionEnhUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEShellSectionEnhUpgrade)
