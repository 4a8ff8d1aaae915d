#include "HVXEConcHeatFluxUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXConcHeatFlux"};

}  // namespace

const HVXUpgradeBinding HVXEConcHeatFluxUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeConcHeatFluxBasicComponents, "Moves the magnitude from its parameter to the heat flux.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEConcHeatFluxUpgrade::kClass = {
    .name = "HVXEConcHeatFluxUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEConcHeatFluxUpgrade)
