#include "HVXConnectionMeshPart.h"

#include "analysis/VLMISamAnalysisConnector.h"
#include "analysis/VLMISamAnalysisSupport.h"

namespace {

constexpr int kMeshAtNextUpdate = 2;

}  // namespace

HRESULT HVXFillFromSupports(const VLMIMSHMeshPart_var& spMeshPart, const VLMBaseUnknown_var& feature) {
  if (spMeshPart->GetSupportCount() > 0) return S_OK;
  const VLMISamAnalysisSupport_var spSupport(feature);
  if (spSupport == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var supports;
  if (Failed(spSupport->ListSupports(supports)) || supports.Size() < 1) return E_FAIL;

  VLMListValVLMBaseUnknown_var objects;
  VLMListValVLMBaseUnknown_var products;
  for (int position = 1; position <= supports.Size(); ++position) {
    const VLMISamAnalysisConnector_var spConnector(supports[position]);
    if (spConnector == NULL_var) continue;
    VLMBaseUnknown_var spFirst;
    static_cast<void>(spConnector->GetPointedObject(spFirst));
    VLMBaseUnknown_var spSecond;
    static_cast<void>(spConnector->GetSecondObject(spSecond));
    if (spFirst == NULL_var || spSecond == NULL_var) continue;
    objects.Append(spFirst);
    products.Append(spSecond);
  }

  for (int position = 1; position <= objects.Size(); ++position) {
    const VLMIProduct_var spProduct(products[position]);
    const VLMILinkableObject_var spObject(objects[position]);
    // Ends the filling and is no failure of it, on purpose.
    if (Failed(spMeshPart->AddSupport(spProduct, spObject, kMeshAtNextUpdate))) break;
  }
  return S_OK;
}
