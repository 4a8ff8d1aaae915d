#include "HVXEPerturbationStepUpgrade.h"

#include "HVXConnectionContainer.h"
#include "HVXUpgradeIdentifiers.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXStaticLPStepLT"};

}  // namespace

const HVXUpgradeBinding HVXEPerturbationStepUpgrade::kBindings[] = {
    {kAddConnectionContainer, "Gives the step a connections container beside its loads.",
     Shared<&HVXAddConnectionContainerToStep>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEPerturbationStepUpgrade::kClass = {
    .name = "HVXEPerturbationStepUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HVX_EXPORT_CREATE_TIE(HVXEPerturbationStepUpgrade)
