#include "HVXSupportUpgrades.h"

#include "modeler/VLMIContainer.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXISamGroupExt.h"

namespace {

const VLMUnicodeString kSolid("Solid");
const VLMUnicodeString kViewContext("MfDefault3DView");
const VLMUnicodeString kAnyConnector("");

constexpr int kIdentical = 2;  // the one answer of Compare that counts as equal
constexpr std::int32_t kGroupOfSupports = 1;
constexpr int kAddAlways = 2;  // also an object that is a support already

// The part whose geometry the container holds; null as soon as one link on the way is missing.
VLMIPartRequest_var PartOf(const VLMIContainer_var& spContainer) {
  const VLMIContainerOfDocument_var spContainerOfDocument(spContainer);
  const VLMIPrtContainer_var spPrtContainer(spContainerOfDocument);
  if (spPrtContainer == NULL_var) return NULL_var;
  VLMISpecObject_var spPart;
  static_cast<void>(spPrtContainer->GetPart(spPart));
  return VLMIPartRequest_var(spPart);
}

// The topological body that a body's result produces; null for a result of another kind.
VLMBody_var BodyProducedBy(const VLMBaseUnknown_var& result) {
  const VLMIGeometricalElement_var spElement(result);
  if (spElement == NULL_var) return NULL_var;
  VLMBody_var spProduced;
  static_cast<void>(spElement->GetBody(spProduced));
  return spProduced;
}

}  // namespace

HRESULT HVXUpgradeBodySupport(const VLMBaseUnknown_var& feature) {
  const VLMISpecObject_var spFeature(feature);
  if (spFeature == NULL_var) return E_FAIL;
  const VLMISamAnalysisSupport_var spSupport(spFeature);
  if (spSupport == NULL_var) return E_FAIL;

  VLMListValVLMBaseUnknown_var supports;
  if (Failed(spSupport->ListSupports(supports))) return S_OK;  // a feature without supports is sound
  for (int position = 1; position <= supports.Size(); ++position) {
    const VLMISamAnalysisConnector_var spConnector(supports[position]);
    if (spConnector == NULL_var) continue;
    VLMBaseUnknown_var spPointed;
    if (Failed(spConnector->GetPointedObject(spPointed)) || spPointed == NULL_var) continue;
    VLMBaseUnknown_var spSecond;
    if (Failed(spConnector->GetSecondObject(spSecond)) || spSecond == NULL_var) continue;

    const VLMISpecObject_var spSpecOnPointed(spPointed);
    if (spSpecOnPointed == NULL_var) continue;
    if (spSpecOnPointed->GetLateType().Compare(kSolid) != kIdentical) continue;
    // One solid that cannot be replaced does not keep the others from being replaced, on purpose.
    static_cast<void>(HVXReplaceSolid(spSupport, spPointed, spSecond));
  }
  return S_OK;
}

HRESULT HVXReplaceSolid(const VLMISamAnalysisSupport_var& spSupport, const VLMBaseUnknown_var& solid,
                        const VLMBaseUnknown_var& second) {
  const VLMISpecObject_var spSolid(solid);
  if (spSupport == NULL_var || spSolid == NULL_var || second == NULL_var) return E_FAIL;
  VLMIContainer_var spContainer;
  static_cast<void>(spSolid->GetContainer(spContainer));
  if (spContainer == NULL_var) return E_FAIL;
  const VLMIPartRequest_var spPart = PartOf(spContainer);
  if (spPart == NULL_var) return E_FAIL;

  VLMBaseUnknown_var spMainBody;
  static_cast<void>(spPart->GetMainBody(kViewContext, spMainBody));
  if (spMainBody == NULL_var) return E_FAIL;

  const VLMISpecObject_var spSecond(second);
  const VLMILinkableObject_var spLinkableBody(spMainBody);
  if (spSecond == NULL_var || spLinkableBody == NULL_var) return E_FAIL;
  if (const HRESULT out = spSupport->TakeOut(solid, spSecond, kAnyConnector); Failed(out)) return out;
  return spSupport->PutIn(spLinkableBody, spSecond, kAnyConnector);
}

HRESULT HVXUpgradeTopologicalBodySupport(const VLMISamAnalysisSupport_var& spSupport,
                                         const VLMBody_var& spBody, const VLMBaseUnknown_var& second) {
  if (spSupport == NULL_var || spBody == NULL_var || second == NULL_var) return E_FAIL;
  VLMIContainer_var spContainer;
  static_cast<void>(spSupport->GetContainerOf(spBody, spContainer));
  if (spContainer == NULL_var) return E_FAIL;
  const VLMIPartRequest_var spPart = PartOf(spContainer);
  if (spPart == NULL_var) return E_FAIL;

  VLMListValVLMBaseUnknown_var bodies;
  static_cast<void>(spPart->GetBodies(kViewContext, bodies));
  for (int position = 1; position <= bodies.Size(); ++position) {
    const VLMIBodyRequest_var spBodyRequest(bodies[position]);
    if (spBodyRequest == NULL_var) continue;
    VLMListValVLMBaseUnknown_var results;
    static_cast<void>(spBodyRequest->GetResults(kViewContext, results));
    for (const VLMBaseUnknown_var& result : results) {
      if (!(BodyProducedBy(result) == spBody)) continue;
      if (const HRESULT out = spSupport->TakeOut(spBody, second, kAnyConnector); Failed(out)) return out;
      const VLMILinkableObject_var spLinkableBody(spBodyRequest);
      if (const HRESULT in = spSupport->PutIn(spLinkableBody, second, kAnyConnector); Failed(in)) return in;
    }
  }
  return S_OK;
}

HRESULT HVXConvertGroupToSupport(const VLMBaseUnknown_var& group, const VLMISamAnalysisSupport_var& spSupport,
                                 const VLMISamAnalysisConnector_var& spConnector) {
  const HVXISamGroupExt_var spGroup(group);
  if (spGroup == NULL_var) return S_OK;
  std::int32_t kind = 0;
  static_cast<void>(spGroup->GetKind(kind));
  if (kind != kGroupOfSupports) return S_OK;
  if (spGroup->IsDefinedOnMeshPart() != 0) return S_OK;

  const VLMILinkableObject_var spLinkable(spSupport);
  if (spLinkable == NULL_var) return E_FAIL;
  VLMDocument_var spDocument;
  static_cast<void>(spLinkable->GetDocument(spDocument));
  if (spDocument == NULL_var) return E_FAIL;
  VLMISamAnalysisModelFactory_var spFactory;
  static_cast<void>(HVXAnalysisDocUtils::GetFactory(spFactory, spDocument));
  if (spFactory == NULL_var) return E_FAIL;

  VLMListValVLMBaseUnknown_var members;
  if (Failed(spGroup->ListMembers(members))) return E_FAIL;
  VLMListValVLMBaseUnknown_var supports;
  for (int position = 1; position <= members.Size(); ++position) {
    // The last member every time, on purpose: a group of n members has always become n supports on its last.
    const VLMISamAnalysisConnector_var spMember(members[members.Size()]);
    if (spMember == NULL_var) continue;
    VLMBaseUnknown_var spCreated;
    static_cast<void>(spFactory->CreateSupport(spMember, spCreated));
    if (spCreated == NULL_var) return E_FAIL;
    supports.Append(spCreated);
  }
  if (const HRESULT added = spSupport->AddSupports(supports, kAddAlways); Failed(added)) return added;
  if (const HRESULT removed = spSupport->RemoveSupport(spConnector, kAnyConnector); Failed(removed))
    return removed;
  return S_OK;
}
