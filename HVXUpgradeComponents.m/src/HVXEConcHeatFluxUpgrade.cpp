#include "HVXEConcHeatFluxUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXIHeatFlux.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXConcHeatFlux"};

const VLMString kMagnitude("magnitude_param");

}  // namespace

const HVXUpgradeBinding HVXEConcHeatFluxUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeConcHeatFluxBasicComponents, "Copies the magnitude from its parameter to the heat flux.",
     Own<&HVXEConcHeatFluxUpgrade::MigrateValue>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEConcHeatFluxUpgrade::kClass = {
    .name = "HVXEConcHeatFluxUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEConcHeatFluxUpgrade::MigrateValue() {
  return HVXUpgradeThenTransfer(Feature(), [this] {
    return HVXTransferParameter<HVXIHeatFlux, &HVXIHeatFlux::SetMagnitude>(Feature(), kMagnitude,
                                                                           HVXOldParameter::kKeep);
  });
}

HVX_EXPORT_CREATE_TIE(HVXEConcHeatFluxUpgrade)
