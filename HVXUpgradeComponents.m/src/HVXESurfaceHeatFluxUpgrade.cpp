#include "HVXESurfaceHeatFluxUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXSurfaceHeatFlux"};

}  // namespace

const HVXUpgradeBinding HVXESurfaceHeatFluxUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeSurfaceHeatFluxBasicComponents, "Moves the magnitude from its parameter to the heat flux.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
    {kUpgradeSurfaceHeatFluxInvertSurfaceBasicComponents,
     "Brings the basic components to the current layout.", Shared<&HVXRunHostUpgrade>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXESurfaceHeatFluxUpgrade::kClass = {
    .name = "HVXESurfaceHeatFluxUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXESurfaceHeatFluxUpgrade)
