#include "HVXESurfaceToSurfaceContactUpgrage.h"

#include <iostream>

#include "HVXParameterUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamAnalysisConnector.h"
#include "analysis/VLMISamAnalysisScan.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "base/VLMLibrary.h"
#include "modeler/VLMIAlias.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXAnalysisEntityUtils.h"
#include "workbench/HVXIAnalysisCase.h"
#include "workbench/HVXIContactConnectionEnhancementStd.h"
#include "workbench/HVXIContactConnectionProp.h"
#include "workbench/HVXIFactoryExtForPropagation.h"
#include "workbench/HVXISurfaceToSurfaceContact.h"
#include "workbench/HVXISurfaceToSurfaceContactFact.h"
#include "workbench/HVXStepUtils.h"
#include "workbench/HVXUpgradeManager.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXSurfaceToSurfaceContactLT"};

constexpr const char* kContactFactory = "HVXSurfaceToSurfaceContactFact";
constexpr const char* kPropagationFactory = "HVXEFactoryExtForPropagation";
const VLMUnicodeString kOldName("Contact Connection Enhancement-");
const VLMUnicodeString kNewName("Contact Pair-");
const VLMString kConnectionProperty("connectionProperty");
const VLMUnicodeString kFaceFaceContact("SAMFaceFaceContact");
const VLMUnicodeString kInteractionContainer("HVXInteractionContainerLT");
const VLMUnicodeString kConnectorType("GeometrySmartConnector");
const VLMString kConstraintEnforcement("CnstEnfMethod");
const VLMString kThicknessOption("ThicknessOptioin");  // the stored key is spelt so
const VLMString kAdjustmentTolerance("adjustTolVal_param");
const VLMString kNoUnit("");

// In the order in which they are treated in each step.
const VLMUnicodeString kOutputRequestSets[] = {"HVXDatOutputRequestContainerLT",
                                               "HVXHistoryOutputRequestContainerLT",
                                               "HVXFieldOutputRequestContainerLT"};

constexpr std::int32_t kInteractionsInSteps = 1;  // the kind of case

// The interaction container of the case's step number 1, whatever kind of step that is, on purpose.
HRESULT FirstStepInteractionContainer(const VLMISpecObject_var& spCase, VLMISamAnalysisSet_var& spSet) {
  const VLMISamAnalysisCase_var spSamCase(spCase);
  if (spSamCase == NULL_var) return E_FAIL;
  VLMISpecObject_var spStep;
  if (Failed(HVXStepUtils::GetStepByIndex(spSamCase, 1, spStep)) || spStep == NULL_var) return E_FAIL;
  const VLMISamAnalysisScan_var spScan(spStep);
  if (spScan == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var containers;
  static_cast<void>(spScan->ListChildrenOfLateType(kInteractionContainer, containers, VLMScanMode::kAll));
  if (containers.Size() == 0) return E_FAIL;
  spSet = VLMISamAnalysisSet_var(containers[1]);
  return spSet == NULL_var ? E_FAIL : S_OK;
}

// The settings that both views of a contact share. Codes that the older view does not define leave the newer
// setting as it is, and no result is looked at, on purpose.
void CopySharedSettings(const HVXISurfaceToSurfaceContact_var& spOld,
                        const HVXIContactConnectionEnhancementStd_var& spNew) {
  VLMBaseUnknown_var spInteractionProperty;
  static_cast<void>(spOld->GetInteractionProperty(spInteractionProperty));
  static_cast<void>(spNew->SetInteractionProperty(spInteractionProperty));

  static_cast<void>(spNew->SetSurfacesSwapped(spOld->GetSurfacesSwapped()));

  unsigned char reversed = 0;
  static_cast<void>(spOld->GetFirstSurfaceReversed(reversed));
  static_cast<void>(spNew->SetFirstSurfaceReversed(reversed));
  reversed = 0;
  static_cast<void>(spOld->GetSecondSurfaceReversed(reversed));
  static_cast<void>(spNew->SetSecondSurfaceReversed(reversed));

  double tolerance = 0.0;
  static_cast<void>(spOld->GetAdjustmentTolerance(tolerance));
  static_cast<void>(spNew->SetAdjustmentTolerance(tolerance));

  std::int32_t sliding = -1;
  static_cast<void>(spOld->GetSlidingFormulation(sliding));
  if (sliding == 0 || sliding == 1) static_cast<void>(spNew->SetSlidingFormulation(sliding));

  std::int32_t adjustment = -1;
  static_cast<void>(spOld->GetAdjustment(adjustment));
  if (adjustment >= 0 && adjustment <= 2) static_cast<void>(spNew->SetAdjustment(adjustment));

  VLMBaseUnknown_var spAdjustmentGroup;
  static_cast<void>(spOld->GetAdjustmentGroup(spAdjustmentGroup));
  static_cast<void>(spNew->SetAdjustmentGroup(spAdjustmentGroup));
}

}  // namespace

const HVXUpgradeBinding HVXESurfaceToSurfaceContactUpgrage::kBindings[] = {
    {kUpgradeToContactConnectionEnhancementLT,
     "Converts the contact to a contact pair with its settings, supports and output requests.",
     Own<&HVXESurfaceToSurfaceContactUpgrage::ConvertToContactPair>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXESurfaceToSurfaceContactUpgrage::kClass = {
    .name = "HVXESurfaceToSurfaceContactUpgrage",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXESurfaceToSurfaceContactUpgrage::ConvertToContactPair() {
  RenameToContactPair();

  VLMDocument_var spDocument;
  if (Failed(HVXAnalysisDocUtils::GetDocument(spDocument, Feature())) || spDocument == NULL_var)
    return E_FAIL;
  VLMISpecObject_var spCase;
  if (Failed(HVXAnalysisEntityUtils::GetParentCaseFromObject(Feature(), spCase)) || spCase == NULL_var)
    return E_FAIL;
  VLMISamAnalysisSet_var spSet;
  if (Failed(ChooseInteractionSet(spCase, spSet)) || spSet == NULL_var) return E_FAIL;

  // Even a contact that the factory did not convert is carried on with, on purpose: the tolerance step below
  // is what can still end the conversion.
  HVXISurfaceToSurfaceContactFact_var spFactory;
  static_cast<void>(VLMInstantiateComponent(kContactFactory, spFactory));
  if (!(spFactory == NULL_var)) {
    static_cast<void>(spFactory->ConvertContact(spSet, Feature(), spCase, spDocument));
  }

  const VLMUnicodeString name = ReadName();
  static_cast<void>(CopySettings());
  static_cast<void>(RepointOutputRequests());
  if (const HRESULT removed = RemoveToleranceParameter(); Failed(removed)) return removed;

  if (!name.IsNull()) {
    const HVXIContactConnectionEnhancementStd_var spPair(Feature());
    const VLMIAlias_var spAlias(spPair);
    if (!(spAlias == NULL_var)) static_cast<void>(spAlias->SetExternalName(name));
  }
  const HRESULT propagated = Propagate();

  // The siblings are handed over even when this contact could not be propagated, on purpose.
  VLMListValVLMISpecObject_var siblings;
  static_cast<void>(HVXAnalysisDocUtils::GetAllSiblingFeatures(Feature(), siblings));
  static_cast<void>(HVXUpgradeManager::AppendInListOfFeatures(siblings));
  return propagated;
}

void HVXESurfaceToSurfaceContactUpgrage::RenameToContactPair() {
  const HVXISurfaceToSurfaceContact_var spContact(Feature());
  const VLMIAlias_var spAlias(spContact);
  if (spAlias == NULL_var) return;
  VLMUnicodeString name;
  static_cast<void>(spAlias->GetExternalName(name));
  if (name.SearchSubString(kOldName, 0) < 0) return;
  name.ReplaceSubString(kOldName, kNewName);
  static_cast<void>(spAlias->SetExternalName(name));
}

HRESULT HVXESurfaceToSurfaceContactUpgrage::ChooseInteractionSet(const VLMISpecObject_var& spCase,
                                                                 VLMISamAnalysisSet_var& spSet) {
  const HVXIAnalysisCase_var spAnalysisCase(spCase);
  std::int32_t caseKind = 0;
  if (!(spAnalysisCase == NULL_var)) static_cast<void>(spAnalysisCase->GetCaseKind(caseKind));
  if (caseKind == kInteractionsInSteps && HasClearance()) {
    if (Succeeded(FirstStepInteractionContainer(spCase, spSet))) return S_OK;
  }
  return HVXAnalysisDocUtils::GetInteractionSet(spCase, spSet);
}

bool HVXESurfaceToSurfaceContactUpgrage::HasClearance() {
  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  if (spAttrAccess == NULL_var) return false;
  const VLMSpecAttrKey key = spAttrAccess->GetAttrKey(kConnectionProperty);
  if (key.IsNull()) return false;
  const VLMISpecObject_var spSpecOnProperty = spAttrAccess->GetObject(key);
  if (spSpecOnProperty == NULL_var) return false;
  if (!(spSpecOnProperty->GetLateType() == kFaceFaceContact)) return false;
  const HVXIContactConnectionProp_var spProperty(spSpecOnProperty);
  if (spProperty == NULL_var) return false;
  unsigned char prescribed = 0;
  static_cast<void>(spProperty->GetClearanceFlag(prescribed));
  return prescribed == 1;
}

VLMUnicodeString HVXESurfaceToSurfaceContactUpgrage::ReadName() {
  const HVXISurfaceToSurfaceContact_var spContact(Feature());
  const VLMIAlias_var spAlias(spContact);
  VLMUnicodeString name;
  if (!(spAlias == NULL_var)) static_cast<void>(spAlias->GetExternalName(name));
  return name;
}

HRESULT HVXESurfaceToSurfaceContactUpgrage::CopySettings() {
  const HVXISurfaceToSurfaceContact_var spOld(Feature());
  const HVXIContactConnectionEnhancementStd_var spNew(Feature());
  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  if (spOld == NULL_var || spNew == NULL_var || spAttrAccess == NULL_var) return E_FAIL;

  const VLMSpecAttrKey key = spAttrAccess->GetAttrKey(kConnectionProperty);
  if (key.IsNull()) return E_FAIL;
  const VLMISpecObject_var spProperty = spAttrAccess->GetObject(key);
  const VLMILinkableObject_var spLinkable(spProperty);
  const VLMISamAnalysisSupport_var spSupport(spNew);
  if (!(spLinkable == NULL_var) && !(spSupport == NULL_var)) {
    if (const HRESULT prepared = spSupport->PrepareSupports(); Failed(prepared)) return prepared;
    static_cast<void>(spSupport->AddSupport(spLinkable, spProperty, kConnectorType));
  }

  CopySharedSettings(spOld, spNew);
  unsigned char thickness = 0;
  static_cast<void>(spOld->GetThicknessOption(thickness));
  std::int32_t enforcement = -1;
  static_cast<void>(spOld->GetConstraintEnforcement(enforcement));

  VLMISamBasicComponent_var spHolder;
  if (const HRESULT given = spNew->GetBasicComponentHolder(spHolder); Failed(given)) return given;
  if (spHolder == NULL_var) return S_OK;

  VLMISamBasicComponent_var spEnforcement;
  static_cast<void>(spHolder->FindComponent(kConstraintEnforcement, spEnforcement));
  if (spEnforcement == NULL_var) return E_FAIL;
  // Inverted, on purpose: the two releases count the methods the other way round.
  if (enforcement == 0) static_cast<void>(spEnforcement->SetInteger(1, 0, kNoUnit, 0, 0, 0));
  if (enforcement == 1) static_cast<void>(spEnforcement->SetInteger(0, 0, kNoUnit, 0, 0, 0));

  // Not tested for null, on purpose: every holder has this component, and one without is not to be trusted.
  VLMISamBasicComponent_var spThickness;
  static_cast<void>(spHolder->FindComponent(kThicknessOption, spThickness));
  static_cast<void>(spThickness->SetBoolean(thickness, 0, kNoUnit, 0, 0, 0));
  return S_OK;
}

HRESULT HVXESurfaceToSurfaceContactUpgrage::RepointOutputRequests() {
  VLMDocument_var spDocument;
  if (Failed(HVXAnalysisDocUtils::GetDocument(spDocument, Feature())) || spDocument == NULL_var)
    return E_FAIL;
  VLMISpecObject_var spCase;
  static_cast<void>(HVXAnalysisEntityUtils::GetParentCaseFromObject(Feature(), spCase));
  VLMListValVLMBaseUnknown_var steps;
  static_cast<void>(HVXStepUtils::GetAllSteps(steps, VLMISamAnalysisCase_var(spCase)));
  for (int position = 1; position <= steps.Size(); ++position) {
    for (const VLMUnicodeString& setType : kOutputRequestSets) {
      if (const HRESULT repointed = RepointOutputRequestsOfSet(setType, steps[position]); Failed(repointed))
        return repointed;
    }
  }
  return S_OK;
}

// Takes each support on this contact out and puts it in again, so that it is made through the contact's newer
// view.
HRESULT HVXESurfaceToSurfaceContactUpgrage::RepointOutputRequestsOfSet(const VLMUnicodeString& setType,
                                                                       const VLMBaseUnknown_var& spStep) {
  VLMListValVLMISpecObject_var requests;
  static_cast<void>(HVXAnalysisDocUtils::GetFeatureListFromSet(setType, spStep, requests));
  for (int position = 1; position <= requests.Size(); ++position) {
    const VLMISamAnalysisSupport_var spSupport(requests[position]);
    if (spSupport == NULL_var) return E_FAIL;
    VLMListValVLMBaseUnknown_var onContacts;
    static_cast<void>(spSupport->ListSupportsOffering(HVXISurfaceToSurfaceContact::kId, onContacts));
    for (int index = 1; index <= onContacts.Size(); ++index) {
      const VLMISamAnalysisConnector_var spConnector(onContacts[index]);
      if (spConnector == NULL_var) continue;
      VLMBaseUnknown_var spPointed;
      static_cast<void>(spConnector->GetPointedObject(spPointed));
      if (!(spPointed == Feature())) continue;
      static_cast<void>(spSupport->RemoveSupport(spConnector, kConnectorType));
      static_cast<void>(
          spSupport->AddSupport(VLMILinkableObject_var(Feature()), Feature(), kConnectorType, -1));
    }
  }
  return S_OK;
}

HRESULT HVXESurfaceToSurfaceContactUpgrage::RemoveToleranceParameter() {
  VLMDocument_var spDocument;
  if (Failed(HVXAnalysisDocUtils::GetDocument(spDocument, Feature())) || spDocument == NULL_var)
    return E_FAIL;
  VLMISamAnalysisModel_var spModel;
  if (Failed(HVXAnalysisDocUtils::GetAnalysisModel(spModel, spDocument))) return E_FAIL;
  const VLMISpecObject_var spSpec(Feature());
  if (spSpec == NULL_var) return E_FAIL;
  const VLMISpecAttrAccess_var spAttrAccess(spSpec);
  if (spAttrAccess == NULL_var) return E_NOINTERFACE;

  // A contact without the parameter is sound, so the removal is not looked at.
  static_cast<void>(HVXRemoveParameter(kAdjustmentTolerance, spSpec));
  return HVXRegisterInFeatureList(spSpec);
}

// Other than where contact properties are replaced, data that cannot be set end the propagation here, on
// purpose.
HRESULT HVXESurfaceToSurfaceContactUpgrage::Propagate() {
  HVXIFactoryExtForPropagation_var spFactory;
  if (Failed(VLMInstantiateComponent(kPropagationFactory, spFactory)) || spFactory == NULL_var) return E_FAIL;
  const HRESULT prepared = spFactory->SetDefaultPropagationData(Feature(), 0, NULL_var);
  if (Failed(prepared)) {
    std::cout << "Could not set default propagation data\n";
    return prepared;
  }
  const HRESULT propagated = spFactory->Propagate(Feature(), 0);
  if (Failed(propagated)) {
    std::cout << "Propagation failed for feature.\n";
    return E_FAIL;
  }
  return propagated;
}

HVX_EXPORT_CREATE_TIE(HVXESurfaceToSurfaceContactUpgrage)
