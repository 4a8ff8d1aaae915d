#include "HVXELocalElemAsgnUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXLocalElemAsgnLT"};

}  // namespace

const HVXUpgradeBinding HVXELocalElemAsgnUpgrade::kBindings[] = {
    {kUpgradeLocalElementAssignment,
     "Replaces the two element assignments by new ones with the same settings.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXELocalElemAsgnUpgrade::kClass = {
    .name = "HVXELocalElemAsgnUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXELocalElemAsgnUpgrade)
