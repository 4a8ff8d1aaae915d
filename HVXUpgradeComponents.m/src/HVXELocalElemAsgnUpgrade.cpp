#include "HVXELocalElemAsgnUpgrade.h"

#include "HVXParameterUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXAnalysisEntityUtils.h"
#include "workbench/HVXIElementAssignment.h"
#include "workbench/HVXILocalElemAssignment.h"
#include "workbench/HVXISectionControls.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXLocalElemAsgnLT"};

const VLMString kOldList("HVXListElementAsgnSpec");

constexpr int kMigratedCount = 2;

// Reads a value and writes it to the other object; a value that cannot be read is written as `value`. Neither
// result is looked at.
template <class Interface, class Value>
void Carry(const VLMHandle<Interface>& spFrom, HRESULT (Interface::*get)(Value&),
           const VLMHandle<Interface>& spTo, HRESULT (Interface::*set)(std::type_identity_t<Value>),
           Value value) {
  static_cast<void>((spFrom.Get()->*get)(value));
  static_cast<void>((spTo.Get()->*set)(value));
}

void CopySettings(const HVXIElementAssignment_var& spFrom, const HVXIElementAssignment_var& spTo) {
  using Assignment = HVXIElementAssignment;
  Carry(spFrom, &Assignment::GetElementShape, spTo, &Assignment::SetElementShape, 13);
  Carry(spFrom, &Assignment::GetElementOrder, spTo, &Assignment::SetElementOrder, 0);
  Carry(spFrom, &Assignment::GetFormulation, spTo, &Assignment::SetFormulation, 0);
  HVXElementFlagGroup group;
  static_cast<void>(spFrom->GetFlagGroup(group));
  static_cast<void>(spTo->SetFlagGroup(group));
}

void CopyControls(const HVXISectionControls_var& spFrom, const HVXISectionControls_var& spTo) {
  using Controls = HVXISectionControls;
  Carry(spFrom, &Controls::GetDistortionControl, spTo, &Controls::SetDistortionControl, 0);
  Carry(spFrom, &Controls::GetSecondOrderAccuracy, spTo, &Controls::SetSecondOrderAccuracy,
        static_cast<unsigned char>(0));
  Carry(spFrom, &Controls::GetHourglassControl, spTo, &Controls::SetHourglassControl, 0);
  Carry(spFrom, &Controls::GetLengthRatio, spTo, &Controls::SetLengthRatio, 0.0);
  Carry(spFrom, &Controls::GetStiffnessViscousWtFactor, spTo, &Controls::SetStiffnessViscousWtFactor, 0.0);
  Carry(spFrom, &Controls::GetDispHourglassScalingFactor, spTo, &Controls::SetDispHourglassScalingFactor,
        0.0);
  Carry(spFrom, &Controls::GetRotHourglassScalingFactor, spTo, &Controls::SetRotHourglassScalingFactor, 0.0);
  Carry(spFrom, &Controls::GetOutOfPlaneHourglassScalingFactor, spTo,
        &Controls::SetOutOfPlaneHourglassScalingFactor, 0.0);
}

// The settings stay copied when the section controls cannot be.
HRESULT CopyAssignment(const VLMISpecObject_var& spOld, const VLMISpecObject_var& spNew) {
  const HVXIElementAssignment_var spFrom(spOld);
  const HVXIElementAssignment_var spTo(spNew);
  if (spFrom == NULL_var || spTo == NULL_var) return E_FAIL;
  CopySettings(spFrom, spTo);

  VLMBaseUnknown_var spControlsOfOld;
  static_cast<void>(spFrom->GetSectionControls(spControlsOfOld));
  VLMBaseUnknown_var spControlsOfNew;
  static_cast<void>(spTo->GetSectionControls(spControlsOfNew));
  const HVXISectionControls_var spControlsFrom(spControlsOfOld);
  const HVXISectionControls_var spControlsTo(spControlsOfNew);
  if (spControlsFrom == NULL_var || spControlsTo == NULL_var) return E_FAIL;
  CopyControls(spControlsFrom, spControlsTo);
  return S_OK;
}

}  // namespace

const HVXUpgradeBinding HVXELocalElemAsgnUpgrade::kBindings[] = {
    {kUpgradeLocalElementAssignment,
     "Replaces the two element assignments by new ones with the same settings.",
     Own<&HVXELocalElemAsgnUpgrade::ReplaceElementAssignments>, HVXOnFailure::kIgnore,
     "Only lists of exactly two assignments are replaced."},
};

constinit const HVXUpgradeClass HVXELocalElemAsgnUpgrade::kClass = {
    .name = "HVXELocalElemAsgnUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXELocalElemAsgnUpgrade::ReplaceElementAssignments() {
  const VLMISpecObject_var spSpec(Feature());
  const HVXILocalElemAssignment_var spLocal(Feature());
  if (spSpec == NULL_var || spLocal == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var oldAssignments;
  if (Failed(spLocal->GetElementAssignments(oldAssignments))) return E_FAIL;
  // Lists of any other length are not migrated, on purpose.
  if (oldAssignments.Size() != kMigratedCount) return E_FAIL;

  VLMListValVLMBaseUnknown_var newAssignments;
  for (const VLMBaseUnknown_var& spOldAssignment : oldAssignments) {
    const VLMISpecObject_var spOld(spOldAssignment);
    if (spOld == NULL_var) continue;
    VLMISpecObject_var spNew;
    // An assignment that cannot be created is left out of the list, on purpose.
    if (Failed(HVXAnalysisEntityUtils::CreateElementAssignment(spSpec, spNew)) || spNew == NULL_var) continue;
    static_cast<void>(CopyAssignment(spOld, spNew));
    newAssignments.Append(spNew);
  }
  if (Failed(spLocal->SetElementAssignments(newAssignments))) return E_FAIL;

  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  if (spAttrAccess == NULL_var) return E_FAIL;
  return HVXRemoveFeatureAttribute(kOldList, spAttrAccess);
}

HVX_EXPORT_CREATE_TIE(HVXELocalElemAsgnUpgrade)
