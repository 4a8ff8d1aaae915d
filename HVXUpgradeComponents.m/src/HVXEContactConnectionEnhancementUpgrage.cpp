#include "HVXEContactConnectionEnhancementUpgrage.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXContactConnectionEnhancementStdLT",
                                      "HVXContactConnectionEnhancementExplicitLT"};

}  // namespace

const HVXUpgradeBinding HVXEContactConnectionEnhancementUpgrage::kBindings[] = {
    {kUpgContactWithContactControl, "Gives a contact without a contact control one, with default tolerances.",
     &HVXNotYetMigrated, HVXOnFailure::kSkip},
    {kUpgContactStdWithInterference, "Completes the contact with an interference fit.", &HVXNotYetMigrated,
     HVXOnFailure::kIgnore},
    {kUpgMapCCPClearanceToInterference, "Turns the connection property's clearance into an interference fit.",
     &HVXNotYetMigrated, HVXOnFailure::kSkip},
    {kUpgCCPToGACOrConstraintAsSupp,
     "Moves the support from the connection property to what that property rests on.", &HVXNotYetMigrated,
     HVXOnFailure::kSkip},
    {kUpgradeAutomaticOverclosureTolerancesInContactPair,
     "Brings the contact control's basic components to the current layout.", &HVXNotYetMigrated,
     HVXOnFailure::kSkip},
    {kUpgradeReAutomaticOverclosureTolerancesInContactPair,
     "Resets the overclosure tolerance mode of a standard contact's control.", &HVXNotYetMigrated,
     HVXOnFailure::kSkip},
    {kUpgradeContactWithSurfSmoothParam, "Adds the surface smoothing parameter, switched off.",
     &HVXNotYetMigrated, HVXOnFailure::kSkip},
};

constinit const HVXUpgradeClass HVXEContactConnectionEnhancementUpgrage::kClass = {
    .name = "HVXEContactConnectionEnhancementUpgrage",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
    .matching = HVXMatching::kSequential,
};

HVX_EXPORT_CREATE_TIE(HVXEContactConnectionEnhancementUpgrage)
