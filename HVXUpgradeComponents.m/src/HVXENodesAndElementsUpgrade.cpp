#include "HVXENodesAndElementsUpgrade.h"

#include <algorithm>

#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMAnalysisExplicitElement.h"
#include "analysis/VLMAnalysisExplicitModel.h"
#include "analysis/VLMAnalysisExplicitNode.h"
#include "analysis/VLMIMSHMeshPart.h"
#include "analysis/VLMISamAnalysisSet.h"
#include "modeler/VLMISpecObject.h"

namespace {

constexpr const char* kLateTypes[] = {"MSHMeshSet"};

const VLMUnicodeString kAllDomains("");

// Resets the counterparts of the mesh objects; `result` becomes that of the last call and stays without one.
template <class Explicit, class MeshObject>
void ResetAll(const std::vector<MeshObject*>& meshObjects, VLMAnalysisExplicitModel* model, HRESULT& result) {
  for (const MeshObject* const meshObject : meshObjects) {
    Explicit counterpart;
    result = counterpart.LinkWithMeshPointer(meshObject, model);
    if (Failed(result) || counterpart == NULL_exp) continue;
    result = counterpart.SetUserNumber(0);
  }
}

std::vector<VLMMSHElement*> ElementsOf(const VLMIMSHMeshPart_var& spMeshPart) {
  std::vector<VLMMSHElement*> elements;
  static_cast<void>(spMeshPart->GetElements(elements));
  return elements;
}

// Empty for a mesh part that is not meshed.
std::vector<VLMMSHNode*> NodesOf(const VLMIMSHMeshPart_var& spMeshPart) {
  VLMIMSHNodeSource_var spSource;
  static_cast<void>(spMeshPart->GetNodeSource(spSource));
  if (spSource == NULL_var) return {};
  VLMIMSHNodeCollection_var spCollection;
  static_cast<void>(spSource->GetNodes(spCollection));
  if (spCollection == NULL_var) return {};

  std::vector<VLMMSHNode*> nodes(static_cast<std::size_t>(std::max(spCollection->GetCount(), 0)));
  nodes.resize(static_cast<std::size_t>(std::max(spCollection->Fill(nodes), 0)));
  return nodes;
}

}  // namespace

const HVXUpgradeBinding HVXENodesAndElementsUpgrade::kBindings[] = {
    {kRestNodeAndElementUserNumber, "Resets the user number of every element and node to 0.",
     Own<&HVXENodesAndElementsUpgrade::ResetUserNumbers>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXENodesAndElementsUpgrade::kClass = {
    .name = "HVXENodesAndElementsUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

// Gives the result of the last call, whatever the earlier ones gave, on purpose: a mesh of which one object
// cannot be linked is reset all the same.
HRESULT HVXENodesAndElementsUpgrade::ResetUserNumbers() {
  const VLMISamAnalysisSet_var spMeshSet(Feature());
  if (spMeshSet == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var meshParts;
  HRESULT result = spMeshSet->ListMembersOffering(VLMIMSHMeshPart::kId, 0, meshParts);
  if (Failed(result)) return E_FAIL;

  for (const VLMBaseUnknown_var& spMember : meshParts) {
    const VLMISpecObject_var spSpec(spMember);
    if (!(spSpec == NULL_var) && spSpec->IsReadyInDomain(kAllDomains) != 1) continue;
    const VLMILinkableObject_var spLinkable(spMember);
    if (spLinkable == NULL_var) return E_FAIL;
    VLMDocument_var spDocument;
    static_cast<void>(spLinkable->GetDocument(spDocument));
    VLMAnalysisExplicitModel* const model = VLMAnalysisExplicitModel::GetDocumentModel(spDocument);

    const VLMIMSHMeshPart_var spMeshPart(spMember);
    if (spMeshPart == NULL_var) continue;
    ResetAll<VLMAnalysisExplicitElement>(ElementsOf(spMeshPart), model, result);
    ResetAll<VLMAnalysisExplicitNode>(NodesOf(spMeshPart), model, result);
  }
  return result;
}

HVX_EXPORT_CREATE_TIE(HVXENodesAndElementsUpgrade)
