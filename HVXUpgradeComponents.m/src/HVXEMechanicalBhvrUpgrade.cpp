#include "HVXEMechanicalBhvrUpgrade.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXInteractionPropertyLT"};

}  // namespace

const HVXUpgradeBinding HVXEMechanicalBhvrUpgrade::kBindings[] = {
    {kUserSubRoutineAttrUpgrade,
     "Gives a behaviour defined by a user subroutine the friction formulation of its own.",
     &HVXNotYetMigrated, HVXOnFailure::kSkip},
    {kFrictionValueUpgrade, "Turns the list of friction values into a friction table.", &HVXNotYetMigrated,
     HVXOnFailure::kSkip},
};

constinit const HVXUpgradeClass HVXEMechanicalBhvrUpgrade::kClass = {
    .name = "HVXEMechanicalBhvrUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
    .matching = HVXMatching::kSequential,
};

HVX_EXPORT_CREATE_TIE(HVXEMechanicalBhvrUpgrade)
