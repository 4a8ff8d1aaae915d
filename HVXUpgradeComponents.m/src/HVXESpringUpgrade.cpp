#include "HVXESpringUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXSpringLT", "HVXDamperLT"};

}  // namespace

const HVXUpgradeBinding HVXESpringUpgrade::kBindings[] = {
    {kUpgradeSpringConnectionProperty, "Sets the mode of the mesh part's link.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
    {kUpgradeSpringMeshExplicitation, "Marks the spring, its mesh part and the virtual parts out of date.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
    {kUpgradeSpringMeshOnOrphanPoint, "Meshes the spring again on points that its connection designs list.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXESpringUpgrade::kClass = {
    .name = "HVXESpringUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXESpringUpgrade)
