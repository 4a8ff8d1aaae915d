#include "HVXEGlobalElementUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXGlobalElemAsgnLT"};

}  // namespace

const HVXUpgradeBinding HVXEGlobalElementUpgrade::kBindings[] = {
    {kUpdateGlobalElementAsgnList,
     "Adds an element assignment with the workbench's defaults to the entry of kind 1.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEGlobalElementUpgrade::kClass = {
    .name = "HVXEGlobalElementUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEGlobalElementUpgrade)
