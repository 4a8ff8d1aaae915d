#include "HVXSpringOrphanPoints.h"

#include "analysis/VLMIMSHMeshPart.h"

namespace {

const VLMUnicodeString kConnection("Connection");

// Null when the mesh part has no meshing operator, or one that meshes no connections.
VLMIMSHConnectionMesher_var ConnectionMesherOf(const VLMIMSHMeshPart_var& spMeshPart) {
  VLMIMSHMeshingOperator_var spOperator;
  static_cast<void>(spMeshPart->GetMeshingOperator(spOperator));
  if (spOperator == NULL_var) return NULL_var;
  VLMIMSHConnectionMesher_var spMesher;
  static_cast<void>(spOperator->GetConnectionMesher(spMesher));
  return spMesher;
}

void AppendConnections(const VLMListValVLMBaseUnknown_var& meshParts, VLMListValVLMBaseUnknown_var& found) {
  for (const VLMBaseUnknown_var& spAttached : meshParts) {
    const VLMIMSHMeshPart_var spMeshPart(spAttached);
    if (spMeshPart == NULL_var) continue;
    if (spMeshPart->IsOfType(kConnection) == S_OK) found.Append(spAttached);
  }
}

}  // namespace

HRESULT HVXCollectMeshPartsOfOrphanPoints(const VLMBaseUnknown_var& spring,
                                          const HVXISamAnalysisConnectionDesign_var& spDesign,
                                          VLMListValVLMBaseUnknown_var& found) {
  const HVXISpring_var spSpring(spring);
  if (spDesign == NULL_var || spSpring == NULL_var) return E_FAIL;
  VLMBaseUnknown_var spMeshPartOfSpring;
  static_cast<void>(spSpring->GetMeshPart(spMeshPartOfSpring));
  const VLMIMSHMeshPart_var spMeshPart(spMeshPartOfSpring);
  if (spMeshPart == NULL_var) return E_FAIL;
  const VLMIMSHConnectionMesher_var spMesher = ConnectionMesherOf(spMeshPart);
  if (spMesher == NULL_var) return S_OK;

  VLMListValVLMBaseUnknown_var points;
  VLMListValVLMBaseUnknown_var products;
  std::int32_t stateOfPoints = -1;
  std::int32_t stateOfProducts = -1;
  static_cast<void>(spDesign->GetPoints(points, stateOfPoints));
  static_cast<void>(spDesign->GetProducts(products, stateOfProducts));
  // Each unfilled list is filled by an operation of its own, and each operation fills both lists.
  if (stateOfPoints == 0) static_cast<void>(spDesign->FillFromPoints(points, products));
  if (stateOfProducts == 0) static_cast<void>(spDesign->FillFromProducts(points, products));

  for (int position = 1; position <= points.Size(); ++position) {
    if (position > products.Size()) break;  // a point without its product is not connected
    const VLMILinkableObject_var spLinkablePoint(points[position]);
    const VLMILinkableObject_var spLinkableProduct(products[position]);
    const VLMBaseUnknown_var spPoint(spLinkablePoint);
    const VLMIProduct_var spProduct(spLinkableProduct);
    if (spPoint == NULL_var || spProduct == NULL_var) continue;
    VLMListValVLMBaseUnknown_var meshParts;
    static_cast<void>(spMesher->ListMeshPartsAtPoint(spPoint, spProduct, meshParts));
    AppendConnections(meshParts, found);
  }
  return S_OK;
}
