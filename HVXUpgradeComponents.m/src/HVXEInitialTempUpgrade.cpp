#include "HVXEInitialTempUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXSupportUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXIInitialTemperature.h"
#include "workbench/HVXITemperature.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXInitialTemperatureLT"};

const VLMString kMagnitude("magnitude_param");

}  // namespace

const HVXUpgradeBinding HVXEInitialTempUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on a solid to the part's main body.",
     Shared<&HVXUpgradeBodySupport>, HVXOnFailure::kStop},
    {kUpgradeInitialTemperatureBasicComponents, "Moves the magnitude from its parameter to the temperature.",
     Own<&HVXEInitialTempUpgrade::MigrateValue>, HVXOnFailure::kIgnore},
    {kUpgradeTempMidside, "Has the temperatures of midside nodes interpolated.",
     Shared<&HVXSwitchMidsideOn<HVXIInitialTemperature>>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEInitialTempUpgrade::kClass = {
    .name = "HVXEInitialTempUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEInitialTempUpgrade::MigrateValue() {
  return HVXUpgradeThenTransfer(Feature(), [this] {
    return HVXTransferParameter<HVXITemperature, &HVXITemperature::SetMagnitude>(Feature(), kMagnitude,
                                                                                 HVXOldParameter::kRemove);
  });
}

HVX_EXPORT_CREATE_TIE(HVXEInitialTempUpgrade)
