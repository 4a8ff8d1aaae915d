#include "HVXERiksStepUpgrade.h"

#include "HVXConnectionContainer.h"
#include "HVXUpgradeIdentifiers.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXRiksStepLT"};

}  // namespace

const HVXUpgradeBinding HVXERiksStepUpgrade::kBindings[] = {
    {kAddConnectionContainer, "Gives the step a connections container beside its loads.",
     Shared<&HVXAddConnectionContainerToStep>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXERiksStepUpgrade::kClass = {
    .name = "HVXERiksStepUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXERiksStepUpgrade)
