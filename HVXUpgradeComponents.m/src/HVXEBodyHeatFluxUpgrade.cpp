#include "HVXEBodyHeatFluxUpgrade.h"

#include "HVXSharedUpgrades.h"
#include "HVXSupportUpgrades.h"
#include "HVXUpgradeIdentifiers.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXBodyHeatFlux"};

}  // namespace

const HVXUpgradeBinding HVXEBodyHeatFluxUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on a solid to the part's main body.",
     Shared<&HVXUpgradeBodySupport>, HVXOnFailure::kStop},
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEBodyHeatFluxUpgrade::kClass = {
    .name = "HVXEBodyHeatFluxUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEBodyHeatFluxUpgrade)
