#include "HVXEPressureUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXIPressureLoad.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXPressure"};

const VLMString kPressure("pressure_param");

}  // namespace

const HVXUpgradeBinding HVXEPressureUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradePressureBasicComponents, "Moves the magnitude from its parameter to the pressure.",
     Own<&HVXEPressureUpgrade::MigrateValue>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEPressureUpgrade::kClass = {
    .name = "HVXEPressureUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEPressureUpgrade::MigrateValue() {
  return HVXUpgradeThenTransfer(Feature(), [this] {
    return HVXTransferParameter<HVXIPressureLoad, &HVXIPressureLoad::SetMagnitude>(
        Feature(), kPressure, HVXOldParameter::kRemoveOrFail);
  });
}

HVX_EXPORT_CREATE_TIE(HVXEPressureUpgrade)
