#include "HVXETiedContactUpgrage.h"

#include "HVXConnectionPropertyLookup.h"
#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "modeler/VLMIAlias.h"
#include "modeler/VLMISpecAttrAccess.h"
#include "workbench/HVXITiedContact.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXTiedContactLT"};

const VLMString kConnectionProperty("connectionProperty");
const VLMUnicodeString kFaceFaceFastened("SAMFaceFaceFastened");
const VLMUnicodeString kConstraint("ConstraintASM");
const VLMUnicodeString kConnectionDesign("SAMGenericConnDesign");
const VLMUnicodeString kConnectorType("GeometrySmartConnector");
const VLMUnicodeString kOldName("Fastened Connection Enhancement-");
const VLMUnicodeString kNewName("Fastened Pair-");

}  // namespace

// Both routines answer one identifier, on purpose: a tie whose support cannot be moved keeps its name too.
const HVXUpgradeBinding HVXETiedContactUpgrage::kBindings[] = {
    {kUpgCCPToGACOrConstraintAsSupp,
     "Moves the support from the connection property to what that property rests on.",
     Own<&HVXETiedContactUpgrage::MoveSupportFromProperty>, HVXOnFailure::kSkip},
    {kUpgCCPToGACOrConstraintAsSupp, "Renames fastened connection enhancements to fastened pairs.",
     Own<&HVXETiedContactUpgrage::RenameToFastenedPair>, HVXOnFailure::kSkip},
};

constinit const HVXUpgradeClass HVXETiedContactUpgrage::kClass = {
    .name = "HVXETiedContactUpgrage",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
    .matching = HVXMatching::kSequential,
};

HRESULT HVXETiedContactUpgrage::MoveSupportFromProperty() {
  const HVXITiedContact_var spTie(Feature());
  const VLMISpecObject_var spSpec(spTie);
  const VLMISpecAttrAccess_var spAttrAccess(spSpec);
  if (spTie == NULL_var || spSpec == NULL_var || spAttrAccess == NULL_var) return E_FAIL;

  const VLMSpecAttrKey key = spAttrAccess->GetAttrKey(kConnectionProperty);
  if (key.IsNull()) return E_FAIL;
  const VLMISpecObject_var spProperty = spAttrAccess->GetObject(key);
  VLMUnicodeString type;
  if (!(spProperty == NULL_var)) type = spProperty->GetLateType();
  if (type == kConstraint || type == kConnectionDesign) return S_OK;
  if (!(type == kFaceFaceFastened)) return S_OK;

  // Not looked at: the tie is given what was found.
  VLMBaseUnknown_var spFirst;
  VLMBaseUnknown_var spSecond;
  static_cast<void>(HVXLookUpConnectionProperty(spProperty, spFirst, spSecond));

  const VLMISamAnalysisSupport_var spSupport(spTie);
  if (spSupport == NULL_var) return E_FAIL;
  static_cast<void>(spSupport->PrepareSupports());
  // Asked one after the other: the order of two in one argument list is each compiler's own.
  const VLMILinkableObject_var spFirstObject(spFirst);
  const VLMISpecObject_var spSecondObject(spSecond);
  return spSupport->AddSupport(spFirstObject, spSecondObject, kConnectorType);
}

HRESULT HVXETiedContactUpgrage::RenameToFastenedPair() {
  const HVXITiedContact_var spTie(Feature());
  if (spTie == NULL_var) return E_FAIL;
  const VLMIAlias_var spAlias(spTie);
  if (spAlias == NULL_var) return S_OK;
  VLMUnicodeString name;
  static_cast<void>(spAlias->GetExternalName(name));
  if (name.SearchSubString(kOldName, 0) >= 0) name.ReplaceSubString(kOldName, kNewName);
  // Written back even when nothing was replaced, on purpose.
  static_cast<void>(spAlias->SetExternalName(name));
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXETiedContactUpgrage)
