#include "HVXERigidCouplingUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXRigidCouplingLT", "HVXSmoothCouplingLT"};

}  // namespace

const HVXUpgradeBinding HVXERigidCouplingUpgrade::kBindings[] = {
    {kUpgradeToConnMeshPart, "Fills the connection mesh part from the supports.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
    {kUpgradeGroupToSupport, "Replaces supports on groups by supports on what the groups hold.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
    {kAddExclusionRegionToMeshPart, "Hands the exclusion regions to the mesh part.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
    {kUpdateGroupToExclusionRegion, "Replaces groups among the exclusion regions by their members.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
    {kReExplicitateFeature, "Marks the mesh part out of date, so that the host rebuilds it.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
    {kUpgradeCouplingMeshPart, "Marks the mesh part out of date, so that the host rebuilds it.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXERigidCouplingUpgrade::kClass = {
    .name = "HVXERigidCouplingUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXERigidCouplingUpgrade)
