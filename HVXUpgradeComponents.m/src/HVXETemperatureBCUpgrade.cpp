#include "HVXETemperatureBCUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXITemperature.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXTemperatureLT"};

const VLMString kMagnitude("magnitude_param");

}  // namespace

const HVXUpgradeBinding HVXETemperatureBCUpgrade::kBindings[] = {
    {kUpgradeTemperatureBCBasicComponents, "Moves the magnitude from its parameter to the temperature.",
     Own<&HVXETemperatureBCUpgrade::MigrateValue>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXETemperatureBCUpgrade::kClass = {
    .name = "HVXETemperatureBCUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXETemperatureBCUpgrade::MigrateValue() {
  return HVXUpgradeThenTransfer(Feature(), [this] {
    return HVXTransferParameter<HVXITemperature, &HVXITemperature::SetMagnitude>(Feature(), kMagnitude,
                                                                                 HVXOldParameter::kRemove);
  });
}

HVX_EXPORT_CREATE_TIE(HVXETemperatureBCUpgrade)
