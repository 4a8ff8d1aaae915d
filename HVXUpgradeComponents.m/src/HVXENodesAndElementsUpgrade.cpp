#include "HVXENodesAndElementsUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"MSHMeshSet"};

}  // namespace

const HVXUpgradeBinding HVXENodesAndElementsUpgrade::kBindings[] = {
    {kRestNodeAndElementUserNumber, "Resets the user number of every element and node to 0.",
     &HVXNotYetMigrated, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXENodesAndElementsUpgrade::kClass = {
    .name = "HVXENodesAndElementsUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXENodesAndElementsUpgrade)
