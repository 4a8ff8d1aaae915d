#include "HVXETempHistoryUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXSupportUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXITemperature.h"
#include "workbench/HVXITemperatureHistory.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXTemperatureHistoryLT"};

const VLMString kMagnitude("magnitude_param");

}  // namespace

const HVXUpgradeBinding HVXETempHistoryUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on a solid to the part's main body.",
     Shared<&HVXUpgradeBodySupport>, HVXOnFailure::kStop},
    {kUpgradeTemperatureHistoryBasicComponents, "Copies the magnitude from its parameter to the temperature.",
     Own<&HVXETempHistoryUpgrade::MigrateValue>, HVXOnFailure::kIgnore},
    {kUpgradeEndIncrementOption, "Sets the end increment option to its default.",
     Own<&HVXETempHistoryUpgrade::SetEndIncrementToDefault>, HVXOnFailure::kIgnore},
    {kUpgradeTempMidside, "Has the temperatures of midside nodes interpolated.",
     Shared<&HVXSwitchMidsideOn<HVXITemperatureHistory>>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXETempHistoryUpgrade::kClass = {
    .name = "HVXETempHistoryUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXETempHistoryUpgrade::MigrateValue() {
  return HVXUpgradeThenTransfer(Feature(), [this] {
    return HVXTransferParameter<HVXITemperature, &HVXITemperature::SetMagnitude>(Feature(), kMagnitude,
                                                                                 HVXOldParameter::kKeep);
  });
}

HRESULT HVXETempHistoryUpgrade::SetEndIncrementToDefault() {
  const HVXITemperatureHistory_var spHistory(Feature());
  if (spHistory == NULL_var) return E_FAIL;
  std::int32_t increment = 0;  // the history may correct it
  if (Failed(spHistory->SetEndIncrement(increment))) return E_FAIL;
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXETempHistoryUpgrade)
