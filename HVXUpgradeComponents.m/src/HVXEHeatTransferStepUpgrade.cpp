#include "HVXEHeatTransferStepUpgrade.h"

#include "HVXConnectionContainer.h"
#include "HVXSharedUpgrades.h"
#include "HVXStepUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXIHeatTransferStep.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXHeatTransferStepLT"};

constexpr const char* kOldKeys[] = {
    "StepTimePeriod_param",       "StepInitialIncrement_param",         "StepMaximumIncrement_param",
    "StepMinimumIncrement_param", "StepMaximumTemperatureChange_param", "StepMinimumTemperatureChange_param",
};

constexpr HVXStepParameter<HVXIHeatTransferStep> kParameters[] = {
    {"Step Time", "Time", 1.0, &HVXIHeatTransferStep::SetTimePeriodParameter},
    {"Initial Increment Size", "Time", 1.0, &HVXIHeatTransferStep::SetInitialIncrementParameter},
    {"Minimum Increment Size", "Time", 0.00001, &HVXIHeatTransferStep::SetMinimumIncrementParameter},
    {"Maximum Increment Size", "Time", 1.0, &HVXIHeatTransferStep::SetMaximumIncrementParameter},
    {"Min. Temperature Change", "TEMPRTRE", -1.0,
     &HVXIHeatTransferStep::SetMinimumTemperatureChangeParameter},
    {"Max. Temperature Change", "TEMPRTRE", 1.0, &HVXIHeatTransferStep::SetMaximumTemperatureChangeParameter},
};

}  // namespace

const HVXUpgradeBinding HVXEHeatTransferStepUpgrade::kBindings[] = {
    {kAddConnectionContainer, "Gives the step a connections container beside its loads.",
     Shared<&HVXAddConnectionContainerToStep>, HVXOnFailure::kStop},
    {kUpgFromSpecToComp, "Moves the incrementation values from their parameters to the step.",
     Own<&HVXEHeatTransferStepUpgrade::MigrateIncrementation>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEHeatTransferStepUpgrade::kClass = {
    .name = "HVXEHeatTransferStepUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEHeatTransferStepUpgrade::MigrateIncrementation() {
  const HVXIHeatTransferStep_var spStep(Feature());
  if (spStep == NULL_var) return E_FAIL;
  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  if (spAttrAccess == NULL_var) return E_NOINTERFACE;

  // All is read before anything is changed.
  double values[std::size(kOldKeys)] = {};
  if (const HRESULT read = HVXReadStepValues(kOldKeys, values, spAttrAccess); Failed(read)) return read;
  if (const HRESULT upgraded = HVXRunHostUpgrade(Feature()); Failed(upgraded)) return upgraded;
  if (Failed(HVXCreateStepParameters<HVXIHeatTransferStep>(kParameters, Feature()))) return E_FAIL;

  // Only the last result counts, on purpose: a value that cannot be set does not keep the others out.
  static_cast<void>(spStep->SetTimePeriod(values[0]));
  static_cast<void>(spStep->SetInitialIncrement(values[1]));
  static_cast<void>(spStep->SetMaximumIncrement(values[2]));
  static_cast<void>(spStep->SetMinimumIncrement(values[3]));
  static_cast<void>(spStep->SetMaximumTemperatureChange(values[4]));
  return spStep->SetMinimumTemperatureChange(values[5]);
}

HVX_EXPORT_CREATE_TIE(HVXEHeatTransferStepUpgrade)
