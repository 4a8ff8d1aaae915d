#include "HVXETiedContactUpgrage.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXTiedContactLT"};

}  // namespace

const HVXUpgradeBinding HVXETiedContactUpgrage::kBindings[] = {
    {kUpgCCPToGACOrConstraintAsSupp,
     "Moves the support from the connection property to what that property rests on.", &HVXNotYetMigrated,
     HVXOnFailure::kSkip},
    {kUpgCCPToGACOrConstraintAsSupp, "Renames fastened connection enhancements to fastened pairs.",
     &HVXNotYetMigrated, HVXOnFailure::kSkip},
};

constinit const HVXUpgradeClass HVXETiedContactUpgrage::kClass = {
    .name = "HVXETiedContactUpgrage",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
    .matching = HVXMatching::kSequential,
};

HVX_EXPORT_CREATE_TIE(HVXETiedContactUpgrage)
