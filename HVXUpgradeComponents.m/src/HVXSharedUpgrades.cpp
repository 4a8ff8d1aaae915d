#include "HVXSharedUpgrades.h"

#include "analysis/VLMISamUpgrade.h"
#include "modeler/VLMISpecObject.h"

HRESULT HVXMarkOutOfDate(const VLMBaseUnknown_var& feature) {
  const VLMISpecObject_var spSpec(feature);
  if (spSpec == NULL_var) return E_FAIL;
  static_cast<void>(spSpec->SetUpToDate(0));
  return S_OK;
}

HRESULT HVXRunHostUpgrade(const VLMBaseUnknown_var& feature) {
  const VLMISamUpgrade_var spUpgrade(feature);
  if (spUpgrade == NULL_var) return E_FAIL;
  return spUpgrade->Upgrade();
}
