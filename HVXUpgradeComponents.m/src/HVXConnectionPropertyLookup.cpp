#include "HVXConnectionPropertyLookup.h"

#include "analysis/VLMISamAnalysisConnector.h"
#include "analysis/VLMISamAnalysisSupport.h"

HRESULT HVXLookUpConnectionProperty(const VLMBaseUnknown_var& feature, VLMBaseUnknown_var& first,
                                    VLMBaseUnknown_var& second) {
  first = NULL_var;
  second = NULL_var;
  const VLMISamAnalysisSupport_var spSupport(feature);
  if (spSupport == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var supports;
  if (Failed(spSupport->ListSupports(supports)) || supports.Size() == 0) return E_FAIL;
  const VLMISamAnalysisConnector_var spConnector(supports[1]);
  if (spConnector == NULL_var) return E_FAIL;
  if (Failed(spConnector->GetPointedObject(first)) || first == NULL_var) return E_FAIL;
  if (Failed(spConnector->GetSecondObject(second)) || second == NULL_var) return E_FAIL;
  return S_OK;
}
