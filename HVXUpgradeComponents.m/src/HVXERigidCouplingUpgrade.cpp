#include "HVXERigidCouplingUpgrade.h"

#include "HVXConnectionMeshPart.h"
#include "HVXSupportUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamGroup.h"
#include "modeler/VLMISpecObject.h"
#include "workbench/HVXIInteractionMeshPart.h"
#include "workbench/HVXIRigidCoupling.h"
#include "workbench/HVXISamGroupExt.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXRigidCouplingLT", "HVXSmoothCouplingLT"};

constexpr std::int32_t kGroupOfSupports = 1;

// Whether the group is to be replaced by its members: a group of supports that is not defined on a mesh part.
bool HoldsSupports(const VLMBaseUnknown_var& group) {
  const HVXISamGroupExt_var spGroupExt(group);
  if (spGroupExt == NULL_var) return false;
  std::int32_t kind = 0;
  static_cast<void>(spGroupExt->GetKind(kind));
  return kind == kGroupOfSupports && spGroupExt->IsDefinedOnMeshPart() == 0;
}

}  // namespace

const HVXUpgradeBinding HVXERigidCouplingUpgrade::kBindings[] = {
    {kUpgradeToConnMeshPart, "Fills the connection mesh part from the supports.",
     Own<&HVXERigidCouplingUpgrade::FillConnectionMeshPart>, HVXOnFailure::kIgnore,
     "Without supports there is nothing to mesh."},
    {kUpgradeGroupToSupport, "Replaces supports on groups of supports by as many on the group's last member.",
     Own<&HVXERigidCouplingUpgrade::ConvertGroupsToSupports>, HVXOnFailure::kIgnore,
     "Without supports there are no groups among them."},
    {kAddExclusionRegionToMeshPart, "Passes the exclusion regions to the mesh part.",
     Own<&HVXERigidCouplingUpgrade::HandExclusionRegionsToMeshPart>, HVXOnFailure::kIgnore,
     "Without a mesh part there is none that must know the regions."},
    {kUpdateGroupToExclusionRegion, "Replaces groups among the exclusion regions by their members.",
     Own<&HVXERigidCouplingUpgrade::ReplaceGroupsInExclusionRegions>, HVXOnFailure::kIgnore},
    {kReExplicitateFeature, "Marks the mesh part out of date, so that the host rebuilds it.",
     Own<&HVXERigidCouplingUpgrade::ReExplicitateMeshPart>, HVXOnFailure::kIgnore,
     "Without a mesh part there is nothing to rebuild."},
    // The same routine, on purpose: the mesh part is rebuilt for each of the two.
    {kUpgradeCouplingMeshPart, "Marks the mesh part out of date, so that the host rebuilds it.",
     Own<&HVXERigidCouplingUpgrade::ReExplicitateMeshPart>, HVXOnFailure::kIgnore,
     "Without a mesh part there is nothing to rebuild."},
};

constinit const HVXUpgradeClass HVXERigidCouplingUpgrade::kClass = {
    .name = "HVXERigidCouplingUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXERigidCouplingUpgrade::FillConnectionMeshPart() {
  return HVXFillConnectionMeshPart<HVXIRigidCoupling>(Feature());
}

// Not one routine with the rigid body constraint's, on purpose: that one sets the mode of the supports first
// and passes over supports without a second object.
HRESULT HVXERigidCouplingUpgrade::ConvertGroupsToSupports() {
  const VLMISamAnalysisSupport_var spSupport(Feature());
  if (spSupport == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var supports;
  HRESULT result = spSupport->ListSupports(supports);
  if (Failed(result) || supports.Size() < 1) return E_FAIL;

  // Gives the result of the last call of the walk, whatever the earlier ones gave, on purpose.
  for (int position = 1; position <= supports.Size(); ++position) {
    const VLMISamAnalysisConnector_var spConnector(supports[position]);
    if (spConnector == NULL_var) continue;
    VLMBaseUnknown_var spFirst;
    result = spConnector->GetPointedObject(spFirst);
    if (Failed(result) || spFirst == NULL_var) continue;

    const VLMISamGroup_var spGroup(spFirst);
    if (!(spGroup == NULL_var)) result = HVXConvertGroupToSupport(spGroup, spSupport, spConnector);
  }
  return result;
}

HRESULT HVXERigidCouplingUpgrade::HandExclusionRegionsToMeshPart() {
  const HVXIRigidCoupling_var spCoupling(Feature());
  if (spCoupling == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var regions;
  if (Failed(spCoupling->GetExclusionRegions(regions))) return E_FAIL;
  VLMBaseUnknown_var spMeshPart;
  if (Failed(spCoupling->GetMeshPart(spMeshPart)) || spMeshPart == NULL_var) return E_FAIL;
  const HVXIInteractionMeshPart_var spInteractionMeshPart(spMeshPart);
  if (spInteractionMeshPart == NULL_var) return E_FAIL;
  return spInteractionMeshPart->SetExclusionRegions(regions);
}

HRESULT HVXERigidCouplingUpgrade::ReplaceGroupsInExclusionRegions() {
  const HVXIRigidCoupling_var spCoupling(Feature());
  if (spCoupling == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var regions;
  if (Failed(spCoupling->GetExclusionRegions(regions))) return E_FAIL;

  VLMListValVLMBaseUnknown_var newRegions;
  for (const VLMBaseUnknown_var& spRegion : regions) {
    const VLMISamAnalysisConnector_var spConnector(spRegion);
    if (spConnector == NULL_var) continue;
    VLMBaseUnknown_var spFirst;
    if (Failed(spConnector->GetPointedObject(spFirst)) || spFirst == NULL_var) continue;

    const VLMISamGroup_var spGroup(spFirst);
    if (spGroup == NULL_var || !HoldsSupports(spFirst)) {
      newRegions.Append(spRegion);
      continue;
    }
    // Each member once: here a group becomes what it holds, unlike a group that is a support.
    VLMListValVLMBaseUnknown_var members;
    static_cast<void>(HVXISamGroupExt_var(spFirst)->ListMembers(members));
    for (const VLMBaseUnknown_var& spMember : members) newRegions.Append(spMember);
  }
  return spCoupling->SetExclusionRegions(newRegions);
}

HRESULT HVXERigidCouplingUpgrade::ReExplicitateMeshPart() {
  const HVXIRigidCoupling_var spCoupling(Feature());
  if (spCoupling == NULL_var) return E_FAIL;
  VLMBaseUnknown_var spMeshPart;
  if (Failed(spCoupling->GetMeshPart(spMeshPart)) || spMeshPart == NULL_var) return E_FAIL;
  const VLMISpecObject_var spSpecOnMeshPart(spMeshPart);
  if (spSpecOnMeshPart == NULL_var) return E_FAIL;
  return spSpecOnMeshPart->SetUpToDate(0);
}

HVX_EXPORT_CREATE_TIE(HVXERigidCouplingUpgrade)
