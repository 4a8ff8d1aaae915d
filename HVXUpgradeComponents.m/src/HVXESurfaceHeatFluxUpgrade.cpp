#include "HVXESurfaceHeatFluxUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXIHeatFlux.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXSurfaceHeatFlux"};

const VLMString kMagnitude("magnitude_param");

}  // namespace

const HVXUpgradeBinding HVXESurfaceHeatFluxUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeSurfaceHeatFluxBasicComponents, "Copies the magnitude from its parameter to the heat flux.",
     Own<&HVXESurfaceHeatFluxUpgrade::MigrateValue>, HVXOnFailure::kIgnore},
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

HRESULT HVXESurfaceHeatFluxUpgrade::MigrateValue() {
  return HVXUpgradeThenTransfer(Feature(), [this] {
    return HVXTransferParameter<HVXIHeatFlux, &HVXIHeatFlux::SetMagnitude>(Feature(), kMagnitude,
                                                                           HVXOldParameter::kKeep);
  });
}

HVX_EXPORT_CREATE_TIE(HVXESurfaceHeatFluxUpgrade)
