#include "HVXEFORUpgrade.h"

#include "HVXSharedUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXAnalysisEntityUtils.h"
#include "workbench/HVXIAnalysisCase.h"
#include "workbench/HVXIBaseOutput.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXNewFieldOutputLT"};

const VLMUnicodeString kNodalTemperature("NT");
const VLMUnicodeString kFirstInList("NT,");
const VLMUnicodeString kInsideList(",NT,");
const VLMUnicodeString kLastInList(",NT");
const VLMUnicodeString kSeparator(",");
const VLMUnicodeString kNothing("");

constexpr std::int32_t kThermal = 2;
constexpr std::int32_t kPreselected = 1;

void RemoveFromList(VLMUnicodeString& variables) {
  variables.ReplaceAll(kInsideList, kSeparator);
  if (variables.SearchSubString(kNodalTemperature, 0, VLMSearchMode::kForward) == 0) {
    variables.ReplaceSubString(kFirstInList, kNothing);
  }
  const int length = variables.GetLengthInChar();
  const int position = variables.SearchSubString(kLastInList, 0, VLMSearchMode::kBackward);
  // The position is not tested for "not found", on purpose: replacing at a position outside the list changes
  // nothing.
  if (position == length - 3) variables.ReplaceSubString(position, 3, kNothing);
}

}  // namespace

const HVXUpgradeBinding HVXEFORUpgrade::kBindings[] = {
    {kUpgradeFORPreselectedVarListAttr,
     "Takes the nodal temperature out of the preselected variables of non-thermal cases.",
     Own<&HVXEFORUpgrade::RemoveNodalTemperature>, HVXOnFailure::kIgnore},
    {kUpgradeFORBasicComponents, "Brings the basic components to the current layout.",
     Shared<&HVXRunHostUpgrade>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEFORUpgrade::kClass = {
    .name = "HVXEFORUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEFORUpgrade::RemoveNodalTemperature() {
  const VLMISpecObject_var spRequest(Feature());
  if (spRequest == NULL_var) return E_FAIL;
  VLMISpecObject_var spCaseOfRequest;
  static_cast<void>(HVXAnalysisEntityUtils::GetParentCaseFromObject(spRequest, spCaseOfRequest));
  const HVXIAnalysisCase_var spCase(spCaseOfRequest);
  if (spCase == NULL_var) return E_FAIL;
  std::int32_t analysisType = 0;
  static_cast<void>(spCase->GetAnalysisType(analysisType));

  const HVXIBaseOutput_var spOutput(spRequest);
  if (spOutput == NULL_var) return E_FAIL;
  VLMUnicodeString variables("");
  static_cast<void>(spOutput->GetPreselectedVariableList(variables));
  std::int32_t selection = 0;
  if (Failed(spOutput->GetVariableSelection(selection))) return E_FAIL;
  if (selection != kPreselected || analysisType == kThermal) return S_OK;

  RemoveFromList(variables);
  if (Failed(spOutput->SetPreselectedVariableList(variables))) return E_FAIL;
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEFORUpgrade)
