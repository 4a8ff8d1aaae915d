#include "HVXGenericUpgrades.h"

#include "HVXUpgradeIdentifiers.h"
#include "HVXUpgradeLibrary.h"
#include "modeler/VLMISpecAttrAccess.h"

namespace {

const VLMUnicodeString kProductPrefix("HVX");
const VLMString kRuleNames("ListOfRuleNames");
const VLMString kRuleStatus("ListOfRuleStatus");

// The class's meta-object: a component of its own, which extends no late type but the null one.
void RegisterMetaObject() {
  static_cast<void>(VLMMetaClass::Retrieve(HVXThisLibrary(), "HVXGenericUpgrades",
                                           VLMExtensionKind::kImplementation, &VLMMetaClass::BaseUnknown(),
                                           "VLMNull", "HVXHKPVersion"));
}

}  // namespace

// A list of several identifiers does nothing and succeeds, even when each is known here, on purpose.
HRESULT HVXGenericUpgrades::Upgtade(const VLMListValVLMUnicodeString& identifiers,
                                    const VLMListValVLMISpecObject_var& features) {
  static const bool registered = (RegisterMetaObject(), true);  // by the first call, once
  static_cast<void>(registered);
  if (identifiers.Size() == 0) return E_FAIL;
  if (identifiers.Size() == 1 && identifiers[1] == kRemoveConsisChkAttr) {
    const HRESULT removed = RemoveConsistencyCheckAttributes(features);
    return Failed(removed) ? removed : S_OK;
  }
  if (identifiers.Size() != 1) return S_OK;
  if (identifiers[1] == kUpgDocumentForCCPRemoval) {
    const HRESULT removed = RemoveCCPs(features);
    return Failed(removed) ? removed : S_OK;  // "nothing was done" comes out as 0 too
  }
  return S_OK;
}

HRESULT HVXGenericUpgrades::RemoveConsistencyCheckAttributes(const VLMListValVLMISpecObject_var& features) {
  for (int position = 1; position <= features.Size(); ++position) {
    const VLMISpecObject_var& spFeature = features[position];
    if (spFeature == NULL_var) continue;
    if (spFeature->GetLateType().SearchSubString(kProductPrefix, 0) != 0) continue;
    const VLMISpecAttrAccess_var spAccess(spFeature);
    if (spAccess == NULL_var) continue;
    const VLMSpecAttrKey names = spAccess->GetAttrKey(kRuleNames);
    if (!names.IsNull() && !(spAccess->GetAttribute(names) == NULL_var)) {
      static_cast<void>(spAccess->RemoveAttribute(names));
    }
    // Looked up and left: the status list stays on the feature, on purpose.
    static_cast<void>(spAccess->GetAttrKey(kRuleStatus));
  }
  return S_OK;
}
