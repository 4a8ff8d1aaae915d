#include "HVXParameterUpgrades.h"

#include "modeler/VLMIKpeParm.h"
#include "workbench/HVXAnalysisDocUtils.h"

namespace {

const VLMString kFeatList("FeatList");

// The analysis model of the feature's document; null without one.
VLMISamAnalysisModel_var ModelOf(const VLMBaseUnknown_var& feature) {
  VLMDocument_var spDocument;
  if (Failed(HVXAnalysisDocUtils::GetDocument(spDocument, feature)) || spDocument == NULL_var)
    return NULL_var;
  VLMISamAnalysisModel_var spModel;
  if (Failed(HVXAnalysisDocUtils::GetAnalysisModel(spModel, spDocument))) return NULL_var;
  return spModel;
}

}  // namespace

HRESULT HVXGetRealParmValue(const VLMString& key, double& value, const VLMISpecAttrAccess_var& spAttrAccess) {
  if (spAttrAccess == NULL_var) return E_FAIL;
  const VLMSpecAttrKey attrKey = spAttrAccess->GetAttrKey(key);
  if (attrKey.IsNull()) return E_FAIL;
  const VLMISpecObject_var spObject = spAttrAccess->GetObject(attrKey);
  const VLMIKpeParm_var spParm(spObject);
  if (spParm == NULL_var) return E_FAIL;
  const VLMIKpeValue_var spValue = spParm->GetValue();
  if (spValue == NULL_var) return E_FAIL;
  // Once there is a value object, reading it counts as done, on purpose.
  static_cast<void>(spValue->AsReal(value));
  return S_OK;
}

HRESULT HVXRemoveParameter(const VLMString& key, const VLMBaseUnknown_var& feature) {
  const VLMISamAnalysisModel_var spModel = ModelOf(feature);
  if (spModel == NULL_var) return E_FAIL;
  const VLMISpecAttrAccess_var spAttrAccess(feature);
  if (spAttrAccess == NULL_var) return E_FAIL;
  const VLMSpecAttrKey attrKey = spAttrAccess->GetAttrKey(key);
  if (attrKey.IsNull()) return E_FAIL;
  const VLMISpecObject_var spParm = spAttrAccess->GetObject(attrKey);
  if (spParm == NULL_var) return S_OK;
  return spModel->RemoveObject(spParm, 0);
}

HRESULT HVXRegisterInFeatureList(const VLMBaseUnknown_var& feature) {
  const VLMISamAnalysisModel_var spModel = ModelOf(feature);
  const VLMISpecAttrAccess_var spAttrAccess(spModel);
  if (spAttrAccess == NULL_var) return E_FAIL;
  const VLMSpecAttrKey attrKey = spAttrAccess->GetAttrKey(kFeatList);
  if (attrKey.IsNull()) return E_FAIL;
  if (const HRESULT stored = spAttrAccess->StoreObject(attrKey, feature, 0); Failed(stored)) return stored;
  return S_OK;
}

HRESULT HVXRemoveFeatureAttribute(const VLMString& key, const VLMISpecAttrAccess_var& spAttrAccess) {
  if (spAttrAccess == NULL_var) return E_FAIL;
  const VLMSpecAttrKey attrKey = spAttrAccess->GetAttrKey(key);
  if (attrKey.IsNull()) return E_FAIL;
  static_cast<void>(spAttrAccess->RemoveAttribute(attrKey));
  return S_OK;
}
