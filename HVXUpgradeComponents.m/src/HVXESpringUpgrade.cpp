#include "HVXESpringUpgrade.h"

#include "HVXSharedUpgrades.h"
#include "HVXSpringOrphanPoints.h"
#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamGenMeshPartMgt.h"
#include "modeler/VLMISpecAttrAccess.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXIVirtualPartExt.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXSpringLT", "HVXDamperLT"};

const VLMString kMeshPart("MeshPart");
const VLMUnicodeString kPropertySet("PropertySet");

constexpr int kCurrentMode = 1;
constexpr int kExistingMeshParts = 1;

}  // namespace

const HVXUpgradeBinding HVXESpringUpgrade::kBindings[] = {
    {kUpgradeSpringConnectionProperty, "Sets the mode of the mesh part's link.",
     Own<&HVXESpringUpgrade::SetMeshPartMode>, HVXOnFailure::kIgnore},
    {kUpgradeSpringMeshExplicitation,
     "Marks the spring, its mesh part and the virtual parts with their mesh parts out of date.",
     Own<&HVXESpringUpgrade::ReExplicitateMeshing>, HVXOnFailure::kIgnore},
    {kUpgradeSpringMeshOnOrphanPoint, "Meshes the spring again on points that its connection designs list.",
     Own<&HVXESpringUpgrade::MeshOnOrphanPoints>, HVXOnFailure::kIgnore,
     "A spring without a mesh part or connection designs has no such points."},
};

constinit const HVXUpgradeClass HVXESpringUpgrade::kClass = {
    .name = "HVXESpringUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXESpringUpgrade::SetMeshPartMode() {
  const VLMISpecObject_var spSpec(Feature());
  if (spSpec == NULL_var) return E_FAIL;
  const VLMISpecAttrAccess_var spAttrAccess(spSpec);
  if (spAttrAccess == NULL_var) return S_OK;
  const VLMSpecAttrKey key = spAttrAccess->GetAttrKey(kMeshPart);
  if (key.IsNull()) return S_OK;
  if (spAttrAccess->GetMode(key) != kCurrentMode) static_cast<void>(spAttrAccess->SetMode(key, kCurrentMode));
  return S_OK;
}

HRESULT HVXESpringUpgrade::ReExplicitateMeshing() {
  const HVXISpring_var spSpring(Feature());
  if (spSpring == NULL_var) return E_FAIL;
  VLMBaseUnknown_var spMeshPart;
  static_cast<void>(spSpring->GetMeshPart(spMeshPart));
  static_cast<void>(HVXMarkOutOfDate(spMeshPart));
  static_cast<void>(HVXMarkOutOfDate(spSpring));

  const VLMILinkableObject_var spLinkable(spSpring);
  if (spLinkable == NULL_var) return E_FAIL;
  VLMDocument_var spDocument;
  static_cast<void>(spLinkable->GetDocument(spDocument));
  VLMListValVLMBaseUnknown_var sets;
  static_cast<void>(HVXAnalysisDocUtils::GetAnalysisSets(sets, spDocument, kPropertySet));
  if (sets.Size() != 1) return S_OK;  // with several it is not told which one is the spring's, on purpose

  const VLMISamAnalysisSet_var spPropertySet(sets[1]);
  if (spPropertySet == NULL_var) return S_OK;
  VLMListValVLMBaseUnknown_var virtualParts;
  static_cast<void>(spPropertySet->ListMembersOffering(HVXIVirtualPartExt::kId, 0, virtualParts));
  for (int position = 1; position <= virtualParts.Size(); ++position) {
    static_cast<void>(HVXMarkOutOfDate(virtualParts[position]));
    const VLMISamGenMeshPartMgt_var spMeshParts(virtualParts[position]);
    if (spMeshParts == NULL_var) continue;
    VLMListValVLMBaseUnknown_var meshParts;
    static_cast<void>(spMeshParts->ListMeshParts(kExistingMeshParts, meshParts));
    for (const VLMBaseUnknown_var& spPartOfVirtual : meshParts) {
      static_cast<void>(HVXMarkOutOfDate(spPartOfVirtual));
    }
  }
  return S_OK;
}

HRESULT HVXESpringUpgrade::MeshOnOrphanPoints() {
  const HVXISpring_var spSpring(Feature());
  if (spSpring == NULL_var) return E_FAIL;
  VLMBaseUnknown_var spMeshPart;
  static_cast<void>(spSpring->GetMeshPart(spMeshPart));
  if (spMeshPart == NULL_var) return E_FAIL;

  VLMListValVLMBaseUnknown_var found;
  const int designCount = spSpring->GetConnectionDesignCount();
  for (int index = 1; index <= designCount; ++index) {
    VLMBaseUnknown_var spDesignOfSpring;
    static_cast<void>(spSpring->GetConnectionDesign(index, spDesignOfSpring));
    const HVXISamAnalysisConnectionDesign_var spDesign(spDesignOfSpring);
    if (spDesign == NULL_var) return E_FAIL;
    static_cast<void>(HVXCollectMeshPartsOfOrphanPoints(spSpring, spDesign, found));
  }
  // What was found tells only that there is something to mesh, on purpose: the spring is what is meshed.
  if (found.Size() > 0) static_cast<void>(HVXMarkOutOfDate(spMeshPart));
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXESpringUpgrade)
