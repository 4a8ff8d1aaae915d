#include "HVXEContactConnectionEnhancementUpgrage.h"

#include "HVXConnectionPropertyLookup.h"
#include "HVXSharedUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "base/VLMLibrary.h"
#include "modeler/VLMIContainer.h"
#include "workbench/HVXIContactConnectionEnhancementExplicit.h"
#include "workbench/HVXIContactConnectionEnhancementStd.h"
#include "workbench/HVXIContactConnectionProp.h"
#include "workbench/HVXIContactControl.h"
#include "workbench/HVXIInterferenceFit.h"
#include "workbench/HVXISurfaceToSurfaceContactFact.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXContactConnectionEnhancementStdLT",
                                      "HVXContactConnectionEnhancementExplicitLT"};

constexpr const char* kContactFactory = "HVXSurfaceToSurfaceContactFact";
const VLMUnicodeString kFaceFaceContact("SAMFaceFaceContact");
const VLMUnicodeString kConstraint("ConstraintASM");
const VLMUnicodeString kConnectionDesign("SAMGenericConnDesign");
const VLMUnicodeString kConnectorType("GeometrySmartConnector");
const VLMString kSurfaceSmoothing("SurfaceSmoothing");
const VLMString kBoolean("SAMBoolean");
const VLMString kNoUnit("");

constexpr double kDefaultSearchTolerance = 0.1;
constexpr double kDefaultOverclosureTolerance = -0.001;  // negative: a penetration
constexpr std::int32_t kChosenBySolver = 2;              // the overclosure tolerance mode
constexpr std::int32_t kResolvedBySolver = 1;            // the type of an interference fit
constexpr std::int32_t kGivenValue = 1;                  // the definition of an interference fit

// The contact control of either variant; null without one.
VLMBaseUnknown_var ContactControlOf(const HVXIContactConnectionEnhancementStd_var& spStandard,
                                    const HVXIContactConnectionEnhancementExplicit_var& spExplicit) {
  VLMBaseUnknown_var spControl;
  if (!(spStandard == NULL_var)) {
    static_cast<void>(spStandard->GetContactControl(spControl));
  } else if (!(spExplicit == NULL_var)) {
    static_cast<void>(spExplicit->GetContactControl(spControl));
  }
  return spControl;
}

// The connection property that the contact rests on; null without one. The lookup gives it also where the
// support lacks its second object, so its result is not looked at.
VLMISpecObject_var ConnectionPropertyOf(const VLMBaseUnknown_var& contact) {
  VLMBaseUnknown_var spProperty;
  VLMBaseUnknown_var spSecond;
  static_cast<void>(HVXLookUpConnectionProperty(contact, spProperty, spSecond));
  return VLMISpecObject_var(spProperty);
}

}  // namespace

const HVXUpgradeBinding HVXEContactConnectionEnhancementUpgrage::kBindings[] = {
    {kUpgContactWithContactControl,
     "Gives a contact without contact control a new one, and a standard one default tolerances.",
     Own<&HVXEContactConnectionEnhancementUpgrage::AddContactControl>, HVXOnFailure::kSkip},
    {kUpgContactStdWithInterference, "Gives a standard contact without interference fit a new one.",
     Own<&HVXEContactConnectionEnhancementUpgrage::CompleteWithInterferenceFit>, HVXOnFailure::kIgnore},
    {kUpgMapCCPClearanceToInterference, "Turns the connection property's clearance into an interference fit.",
     Own<&HVXEContactConnectionEnhancementUpgrage::MapClearanceToInterference>, HVXOnFailure::kSkip},
    {kUpgCCPToGACOrConstraintAsSupp,
     "Moves the support from the connection property to what that property rests on.",
     Own<&HVXEContactConnectionEnhancementUpgrage::MoveSupportFromProperty>, HVXOnFailure::kSkip},
    {kUpgradeAutomaticOverclosureTolerancesInContactPair,
     "Brings the contact control's basic components to the current layout.",
     Own<&HVXEContactConnectionEnhancementUpgrage::UpgradeContactControl>, HVXOnFailure::kSkip},
    {kUpgradeReAutomaticOverclosureTolerancesInContactPair,
     "Resets the overclosure tolerance mode of a standard contact's control.",
     Own<&HVXEContactConnectionEnhancementUpgrage::ResetOverclosureMode>, HVXOnFailure::kSkip,
     "Only the control of a standard contact has the mode."},
    {kUpgradeContactWithSurfSmoothParam, "Adds the surface smoothing parameter, switched off.",
     Own<&HVXEContactConnectionEnhancementUpgrage::AddSurfaceSmoothing>, HVXOnFailure::kSkip},
};

constinit const HVXUpgradeClass HVXEContactConnectionEnhancementUpgrage::kClass = {
    .name = "HVXEContactConnectionEnhancementUpgrage",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
    .matching = HVXMatching::kSequential,
};

HRESULT HVXEContactConnectionEnhancementUpgrage::AddContactControl() {
  const VLMISpecObject_var spContact(Feature());
  if (spContact == NULL_var) return E_FAIL;
  HVXISurfaceToSurfaceContactFact_var spFactory;
  HRESULT result = VLMInstantiateComponent(kContactFactory, spFactory);

  // A contact without the host's upgrade is passed over.
  VLMIContainer_var spContainer;
  static_cast<void>(spContact->GetContainer(spContainer));
  if (!(spContainer == NULL_var)) static_cast<void>(HVXRunHostUpgrade(spContact));

  const HVXIContactConnectionEnhancementStd_var spStandard(spContact);
  const HVXIContactConnectionEnhancementExplicit_var spExplicit(spContact);
  if (!(ContactControlOf(spStandard, spExplicit) == NULL_var)) return result;

  const bool knownVariant = !(spStandard == NULL_var && spExplicit == NULL_var);
  if (!(spFactory == NULL_var) && knownVariant) result = spFactory->CreateContactControl(spContact);
  if (spStandard == NULL_var) return result;

  // The defaults are set even when no contact control could be created, on purpose.
  static_cast<void>(spStandard->SetSearchTolerance(kDefaultSearchTolerance));
  static_cast<void>(spStandard->SetOverclosureTolerance(kDefaultOverclosureTolerance));
  static_cast<void>(spStandard->SetAutomaticTolerances(0));
  return result;
}

HRESULT HVXEContactConnectionEnhancementUpgrage::CompleteWithInterferenceFit() {
  HVXISurfaceToSurfaceContactFact_var spFactory;
  if (Failed(VLMInstantiateComponent(kContactFactory, spFactory)) || spFactory == NULL_var) return E_FAIL;
  const VLMISpecObject_var spContact(Feature());
  if (spContact == NULL_var) return E_FAIL;
  static_cast<void>(spFactory->CompleteContact(spContact));
  return S_OK;
}

HRESULT HVXEContactConnectionEnhancementUpgrage::MapClearanceToInterference() {
  const VLMISpecObject_var spContact(Feature());
  if (spContact == NULL_var) return E_FAIL;
  const VLMISpecObject_var spSpecOnProperty = ConnectionPropertyOf(spContact);
  if (spSpecOnProperty == NULL_var) return S_OK;
  const VLMUnicodeString type = spSpecOnProperty->GetLateType();
  if (type == kConstraint || type == kConnectionDesign) return S_OK;
  if (!(type == kFaceFaceContact)) return S_OK;

  const HVXIContactConnectionProp_var spProperty(spSpecOnProperty);
  if (spProperty == NULL_var) return E_FAIL;
  unsigned char prescribed = 0;
  static_cast<void>(spProperty->GetClearanceFlag(prescribed));
  float clearance = 0.0F;
  static_cast<void>(spProperty->GetClearance(clearance));
  if (prescribed != 1) return S_OK;

  const HVXIContactConnectionEnhancementStd_var spStandard(spContact);
  if (spStandard == NULL_var) return S_OK;
  VLMBaseUnknown_var spFitOfContact;
  static_cast<void>(spStandard->GetInterferenceFit(spFitOfContact));
  const HVXIInterferenceFit_var spFit(spFitOfContact);
  if (spFit == NULL_var) return S_OK;
  static_cast<void>(spFit->SetFitType(kResolvedBySolver));
  static_cast<void>(spFit->SetDefinition(kGivenValue));
  // The number goes over as it stands: same sign, same unit.
  static_cast<void>(spFit->SetValue(static_cast<double>(clearance)));
  return S_OK;
}

HRESULT HVXEContactConnectionEnhancementUpgrage::MoveSupportFromProperty() {
  const VLMISpecObject_var spContact(Feature());
  if (spContact == NULL_var) return E_FAIL;
  const VLMISpecObject_var spProperty = ConnectionPropertyOf(spContact);
  if (spProperty == NULL_var) return S_OK;
  const VLMUnicodeString type = spProperty->GetLateType();
  if (type == kConstraint || type == kConnectionDesign) return S_OK;
  if (!(type == kFaceFaceContact)) return S_OK;

  // Not looked at: the contact is given what was found.
  VLMBaseUnknown_var spFirst;
  VLMBaseUnknown_var spSecond;
  static_cast<void>(HVXLookUpConnectionProperty(spProperty, spFirst, spSecond));

  const VLMISamAnalysisSupport_var spSupport(spContact);
  if (spSupport == NULL_var) return E_FAIL;
  static_cast<void>(spSupport->PrepareSupports());
  return spSupport->AddSupport(VLMILinkableObject_var(spFirst), spSecond, kConnectorType);
}

HRESULT HVXEContactConnectionEnhancementUpgrage::UpgradeContactControl() {
  const VLMISpecObject_var spContact(Feature());
  if (spContact == NULL_var) return E_FAIL;
  const HVXIContactConnectionEnhancementStd_var spStandard(spContact);
  const HVXIContactConnectionEnhancementExplicit_var spExplicit(spContact);
  const VLMBaseUnknown_var spControl = ContactControlOf(spStandard, spExplicit);
  if (spControl == NULL_var) return E_FAIL;
  // A control without the host's upgrade is passed over.
  static_cast<void>(HVXRunHostUpgrade(spControl));
  return S_OK;
}

HRESULT HVXEContactConnectionEnhancementUpgrage::ResetOverclosureMode() {
  const VLMISpecObject_var spContact(Feature());
  if (spContact == NULL_var) return E_FAIL;
  // Standard contacts only: explicit ones keep the mode that they have, on purpose.
  const HVXIContactConnectionEnhancementStd_var spStandard(spContact);
  if (spStandard == NULL_var) return E_FAIL;
  VLMBaseUnknown_var spControlOfContact;
  static_cast<void>(spStandard->GetContactControl(spControlOfContact));
  if (spControlOfContact == NULL_var) return E_FAIL;
  const HVXIContactControl_var spControl(spControlOfContact);
  if (!(spControl == NULL_var)) {
    static_cast<void>(spControl->SetOverclosureToleranceMode(kChosenBySolver));
  }
  return S_OK;
}

HRESULT HVXEContactConnectionEnhancementUpgrage::AddSurfaceSmoothing() {
  const VLMISpecObject_var spSpec(Feature());
  if (spSpec == NULL_var) return E_FAIL;
  const HVXIContactConnectionEnhancement_var spContact(spSpec);
  if (spContact == NULL_var) return E_FAIL;
  VLMISamBasicComponent_var spHolder;
  static_cast<void>(spContact->GetBasicComponentHolder(spHolder));
  if (spHolder == NULL_var) return E_FAIL;

  VLMISamBasicComponent_var spSmoothing;
  static_cast<void>(spHolder->FindComponent(kSurfaceSmoothing, spSmoothing));
  if (!(spSmoothing == NULL_var)) return S_OK;
  // A creation that fails is no error: the contact does without.
  static_cast<void>(spHolder->CreateComponent(kSurfaceSmoothing, kBoolean, NULL_var));
  static_cast<void>(spHolder->FindComponent(kSurfaceSmoothing, spSmoothing));
  if (!(spSmoothing == NULL_var)) static_cast<void>(spSmoothing->SetBoolean(0, 0, kNoUnit, 0, 0, 0));
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEContactConnectionEnhancementUpgrage)
