#include "HVXEFORequestContainer.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXFieldOutputRequestContainerLT"};

}  // namespace

const HVXUpgradeBinding HVXEFORequestContainer::kBindings[] = {
    {kUpgradeFieldOutputRequest,
     "Replaces each old field output request by a current one with the preselected variables.",
     &HVXNotYetMigrated, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEFORequestContainer::kClass = {
    .name = "HVXEFORequestContainer",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEFORequestContainer)
