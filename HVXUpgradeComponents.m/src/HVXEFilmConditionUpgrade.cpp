#include "HVXEFilmConditionUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXIFilmCondition.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXFilmCondition"};

const VLMString kReferenceTemperature("refTemperature_param");

}  // namespace

const HVXUpgradeBinding HVXEFilmConditionUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeFilmConditionBasicComponents,
     "Moves the reference temperature from its parameter to the film condition.",
     Own<&HVXEFilmConditionUpgrade::MigrateValue>, HVXOnFailure::kIgnore},
    {kUpgradeFilmConditionInvertSurfaceBasicComponents, "Brings the basic components to the current layout.",
     Shared<&HVXRunHostUpgrade>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEFilmConditionUpgrade::kClass = {
    .name = "HVXEFilmConditionUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEFilmConditionUpgrade::MigrateValue() {
  return HVXUpgradeThenTransfer(Feature(), [this] {
    return HVXTransferParameter<HVXIFilmCondition, &HVXIFilmCondition::SetReferenceTemperature>(
        Feature(), kReferenceTemperature, HVXOldParameter::kRemoveOrFail);
  });
}

HVX_EXPORT_CREATE_TIE(HVXEFilmConditionUpgrade)
