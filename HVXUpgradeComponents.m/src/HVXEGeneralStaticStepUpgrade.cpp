#include "HVXEGeneralStaticStepUpgrade.h"

#include "HVXConnectionContainer.h"
#include "HVXSharedUpgrades.h"
#include "HVXStepUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXIGeneralStaticStep.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXGeneralStaticStepLT"};

constexpr const char* kOldKeys[] = {
    "StepTimePeriod_param",       "StepInitialIncrement_param",    "StepMaximumIncrement_param",
    "StepMinimumIncrement_param", "StepStabilizationFactor_param",
};

constexpr HVXStepParameter<HVXIGeneralStaticStep> kParameters[] = {
    {"Step Time", "Time", 1.0, &HVXIGeneralStaticStep::SetTimePeriodParameter},
    {"Initial Increment Size", "Time", 1.0, &HVXIGeneralStaticStep::SetInitialIncrementParameter},
    {"Minimum Increment Size", "Time", 0.00001, &HVXIGeneralStaticStep::SetMinimumIncrementParameter},
    {"Maximum Increment Size", "Time", 1.0, &HVXIGeneralStaticStep::SetMaximumIncrementParameter},
    {"Stabilization Factor", "DIMENSIONLESS", 0.0002,
     &HVXIGeneralStaticStep::SetStabilizationFactorParameter},
};

}  // namespace

const HVXUpgradeBinding HVXEGeneralStaticStepUpgrade::kBindings[] = {
    {kAddConnectionContainer, "Gives the step a connections container beside its loads.",
     Shared<&HVXAddConnectionContainerToStep>, HVXOnFailure::kStop},
    {kUpgFromSpecToComp, "Moves the incrementation values from their parameters to the step.",
     Own<&HVXEGeneralStaticStepUpgrade::MigrateIncrementation>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEGeneralStaticStepUpgrade::kClass = {
    .name = "HVXEGeneralStaticStepUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEGeneralStaticStepUpgrade::MigrateIncrementation() {
  const HVXIGeneralStaticStep_var spStep(Feature());
  if (spStep == NULL_var) return E_FAIL;
  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  if (spAttrAccess == NULL_var) return E_NOINTERFACE;

  // All is read before anything is changed.
  double values[std::size(kOldKeys)] = {};
  if (const HRESULT read = HVXReadStepValues(kOldKeys, values, spAttrAccess); Failed(read)) return read;
  if (const HRESULT upgraded = HVXRunHostUpgrade(Feature()); Failed(upgraded)) return upgraded;
  if (Failed(HVXCreateStepParameters<HVXIGeneralStaticStep>(kParameters, Feature()))) return E_FAIL;

  if (const HRESULT set = spStep->SetTimePeriod(values[0]); Failed(set)) return set;
  if (const HRESULT set = spStep->SetInitialIncrement(values[1]); Failed(set)) return set;
  if (const HRESULT set = spStep->SetMaximumIncrement(values[2]); Failed(set)) return set;
  if (const HRESULT set = spStep->SetMinimumIncrement(values[3]); Failed(set)) return set;
  return spStep->SetStabilizationFactor(values[4]);
}

HVX_EXPORT_CREATE_TIE(HVXEGeneralStaticStepUpgrade)
