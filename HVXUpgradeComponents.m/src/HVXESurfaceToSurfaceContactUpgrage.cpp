#include "HVXESurfaceToSurfaceContactUpgrage.h"

#include "HVXSharedUpgrades.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXSurfaceToSurfaceContactLT"};

}  // namespace

const HVXUpgradeBinding HVXESurfaceToSurfaceContactUpgrage::kBindings[] = {
    {kUpgradeToContactConnectionEnhancementLT,
     "Converts the contact to a contact pair with its settings, supports and output requests.",
     &HVXNotYetMigrated, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXESurfaceToSurfaceContactUpgrage::kClass = {
    .name = "HVXESurfaceToSurfaceContactUpgrage",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXESurfaceToSurfaceContactUpgrage)
