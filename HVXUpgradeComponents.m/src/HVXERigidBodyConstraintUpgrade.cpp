#include "HVXERigidBodyConstraintUpgrade.h"

#include "HVXConnectionMeshPart.h"
#include "HVXSharedUpgrades.h"
#include "HVXSupportUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamGroup.h"
#include "base/VLMFatalError.h"
#include "workbench/HVXIRigidBodyConstraint.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXRigidBodyConstraintLT"};

constexpr const char* kSourcePath = "HVXUpgradeComponents.m/src/HVXERigidBodyConstraintUpgrade";

constexpr std::int32_t kGroupsAsSupports = 1;
constexpr std::uint32_t kEveryKind = 0xFFFFFFFFU;

}  // namespace

const HVXUpgradeBinding HVXERigidBodyConstraintUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on old bodies to the current bodies of their part.",
     Own<&HVXERigidBodyConstraintUpgrade::MigrateBodySupports>, HVXOnFailure::kIgnore},
    {kUpgradeToConnMeshPart, "Fills the connection mesh part from the supports.",
     Own<&HVXERigidBodyConstraintUpgrade::FillConnectionMeshPart>, HVXOnFailure::kIgnore,
     "Without supports there is nothing to mesh."},
    {kUpgradeGroupToSupport, "Replaces supports on groups of supports by as many on the group's last member.",
     Own<&HVXERigidBodyConstraintUpgrade::ConvertGroupsToSupports>, HVXOnFailure::kIgnore,
     "Without supports there are no groups among them."},
    {kAddCenterOfMassToRBC, "Uses the centre of mass where there is no reference.",
     Own<&HVXERigidBodyConstraintUpgrade::AddCenterOfMass>, HVXOnFailure::kIgnore},
    {kUpgradeBasicComponents, "Brings the basic components to the current layout.",
     Shared<&HVXRunHostUpgrade>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXERigidBodyConstraintUpgrade::kClass = {
    .name = "HVXERigidBodyConstraintUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

// Bodies are told by their interfaces, not by their late type, on purpose: a first object that is both kinds
// of body goes through both routines. What becomes of one support does not keep the others from their turn.
HRESULT HVXERigidBodyConstraintUpgrade::MigrateBodySupports() {
  const VLMISamAnalysisSupport_var spSupport(Feature());
  if (spSupport == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var supports;
  if (Failed(spSupport->ListSupports(supports)) || supports.Size() < 1) return S_OK;

  for (int position = 1; position <= supports.Size(); ++position) {
    const VLMISamAnalysisConnector_var spConnector(supports[position]);
    if (spConnector == NULL_var) continue;
    VLMBaseUnknown_var spFirst;
    if (Failed(spConnector->GetPointedObject(spFirst)) || spFirst == NULL_var) continue;
    VLMBaseUnknown_var spSecond;
    if (Failed(spConnector->GetSecondObject(spSecond)) || spSecond == NULL_var) continue;

    const VLMIShapeFeatureBody_var spShapeBody(spFirst);
    if (!(spShapeBody == NULL_var)) static_cast<void>(HVXReplaceSolid(spSupport, spShapeBody, spSecond));
    const VLMBody_var spBody(spFirst);
    if (!(spBody == NULL_var)) {
      static_cast<void>(HVXUpgradeTopologicalBodySupport(spSupport, spBody, spSecond));
    }
  }
  return S_OK;
}

HRESULT HVXERigidBodyConstraintUpgrade::FillConnectionMeshPart() {
  return HVXFillConnectionMeshPart<HVXIRigidBodyConstraint>(Feature());
}

// Not one routine with the coupling's, on purpose: a coupling neither sets the mode nor needs a second
// object.
HRESULT HVXERigidBodyConstraintUpgrade::ConvertGroupsToSupports() {
  const VLMISamAnalysisSupport_var spSupport(Feature());
  if (spSupport == NULL_var) return E_FAIL;
  static_cast<void>(spSupport->SetMode(kGroupsAsSupports, kEveryKind));
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
    VLMBaseUnknown_var spSecond;
    result = spConnector->GetSecondObject(spSecond);
    if (Failed(result) || spSecond == NULL_var) continue;

    const VLMISamGroup_var spGroup(spFirst);
    if (!(spGroup == NULL_var)) result = HVXConvertGroupToSupport(spGroup, spSupport, spConnector);
  }
  return result;
}

HRESULT HVXERigidBodyConstraintUpgrade::AddCenterOfMass() {
  const HVXIRigidBodyConstraint_var spConstraint(Feature());
  if (spConstraint == NULL_var) VLMFatalError("AssertionFailed:NULL_var != spConstraint", kSourcePath);

  VLMBaseUnknown_var spReference;
  static_cast<void>(spConstraint->GetReferenceConnector(spReference));
  const VLMISamAnalysisConnector_var spReferenceConnector(spReference);
  // A constraint without a reference uses its centre of mass.
  static_cast<void>(spConstraint->SetCenterOfMass(spReferenceConnector == NULL_var ? 1 : 0));
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXERigidBodyConstraintUpgrade)
