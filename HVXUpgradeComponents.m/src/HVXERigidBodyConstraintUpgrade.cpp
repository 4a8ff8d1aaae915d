#include "HVXERigidBodyConstraintUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXRigidBodyConstraintLT"};

}  // namespace

const HVXUpgradeBinding HVXERigidBodyConstraintUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on old bodies to the current bodies of their part.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
    {kUpgradeToConnMeshPart, "Fills the connection mesh part from the supports.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
    {kUpgradeGroupToSupport, "Replaces supports on groups by supports on what the groups hold.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
    {kAddCenterOfMassToRBC, "Uses the centre of mass where there is no reference.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
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

HVX_EXPORT_CREATE_TIE(HVXERigidBodyConstraintUpgrade)
