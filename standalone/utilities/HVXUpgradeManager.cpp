#include "workbench/HVXUpgradeManager.h"

#include "adapters/FeatureAdapter.h"
#include "session/Session.h"

using namespace standalone;

HRESULT HVXUpgradeManager::AppendInListOfFeatures(const VLMListValVLMISpecObject_var& features) {
  if (const HRESULT entered = Checkpoint::Pass("HVXUpgradeManager::AppendInListOfFeatures", nullptr);
      Failed(entered)) {
    return entered;
  }
  Session& session = Session::Current();
  if (session.CurrentDocument() == NULL_var) return E_FAIL;
  for (const VLMISpecObject_var& handle : features) {
    if (Feature* const feature = FeatureOf(handle)) session.AppendForPropagation(*feature);
  }
  return S_OK;
}
