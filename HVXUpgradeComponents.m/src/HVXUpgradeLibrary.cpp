#include "HVXUpgradeLibrary.h"

#include "HVXEARSUpgrade.h"
#include "HVXEAcclnBCUpgrade.h"
#include "HVXEAnalysisCaseUpgrade.h"
#include "HVXEBasicComponentUpgrade.h"
#include "HVXEBodyHeatFluxUpgrade.h"
#include "HVXEClampUpgrade.h"
#include "HVXEConcForceUpgrade.h"
#include "HVXEConcHeatFluxUpgrade.h"
#include "HVXEContactConnectionEnhancementUpgrage.h"
#include "HVXEDisplacementBCUpgrade.h"
#include "HVXEFORUpgrade.h"
#include "HVXEFORequestContainer.h"
#include "HVXEFilmConditionUpgrade.h"
#include "HVXEGasketPropertyUpgrade.h"
#include "HVXEGeneralStaticStepUpgrade.h"
#include "HVXEGlobalElementUpgrade.h"
#include "HVXEGravityUpgrade.h"
#include "HVXEHalvexpropertySetUpgrade.h"
#include "HVXEHeatTransferStepUpgrade.h"
#include "HVXEInitialTempUpgrade.h"
#include "HVXEInitialVelocityUpgrade.h"
#include "HVXEJobUpgrade.h"
#include "HVXELocalElemAsgnUpgrade.h"
#include "HVXEMechanicalBhvrUpgrade.h"
#include "HVXENodesAndElementsUpgrade.h"
#include "HVXEPerturbationStepUpgrade.h"
#include "HVXEPressureUpgrade.h"
#include "HVXEPretensionPropUpgrade.h"
#include "HVXERigidBodyConstraintUpgrade.h"
#include "HVXERigidCouplingUpgrade.h"
#include "HVXERiksStepUpgrade.h"
#include "HVXERotBodyForceUpgrade.h"
#include "HVXEShellSectionEnhUpgrade.h"
#include "HVXESolCaseUpgrade.h"
#include "HVXESolStepUpgrade.h"
#include "HVXESpringUpgrade.h"
#include "HVXESubmodelBCUpgrade.h"
#include "HVXESurfaceHeatFluxUpgrade.h"
#include "HVXESurfaceToSurfaceContactUpgrage.h"
#include "HVXETempHistoryUpgrade.h"
#include "HVXETemperatureBCUpgrade.h"
#include "HVXETiedContactUpgrage.h"
#include "HVXEVelocityBCUpgrade.h"
#include "HVXGenericUpgrades.h"
#include "HVXUpgradeExtension.h"
#include "HVXUpgradeIdentifiers.h"

namespace {

// In the module's order.
constexpr const HVXUpgradeClass* kClasses[] = {
    &HVXEARSUpgrade::kClass,
    &HVXEHalvexpropertySetUpgrade::kClass,
    &HVXEAcclnBCUpgrade::kClass,
    &HVXEAnalysisCaseUpgrade::kClass,
    &HVXEBasicComponentUpgrade::kClass,
    &HVXEBodyHeatFluxUpgrade::kClass,
    &HVXEClampUpgrade::kClass,
    &HVXEConcForceUpgrade::kClass,
    &HVXEConcHeatFluxUpgrade::kClass,
    &HVXEContactConnectionEnhancementUpgrage::kClass,
    &HVXEDisplacementBCUpgrade::kClass,
    &HVXEFORUpgrade::kClass,
    &HVXEFORequestContainer::kClass,
    &HVXEFilmConditionUpgrade::kClass,
    &HVXEGasketPropertyUpgrade::kClass,
    &HVXEGeneralStaticStepUpgrade::kClass,
    &HVXEGlobalElementUpgrade::kClass,
    &HVXEGravityUpgrade::kClass,
    &HVXEHeatTransferStepUpgrade::kClass,
    &HVXEInitialTempUpgrade::kClass,
    &HVXEInitialVelocityUpgrade::kClass,
    &HVXEJobUpgrade::kClass,
    &HVXELocalElemAsgnUpgrade::kClass,
    &HVXEMechanicalBhvrUpgrade::kClass,
    &HVXENodesAndElementsUpgrade::kClass,
    &HVXEPerturbationStepUpgrade::kClass,
    &HVXEPressureUpgrade::kClass,
    &HVXEPretensionPropUpgrade::kClass,
    &HVXERigidBodyConstraintUpgrade::kClass,
    &HVXERigidCouplingUpgrade::kClass,
    &HVXERiksStepUpgrade::kClass,
    &HVXERotBodyForceUpgrade::kClass,
    &HVXEShellSectionEnhUpgrade::kClass,
    &HVXESolCaseUpgrade::kClass,
    &HVXESolStepUpgrade::kClass,
    &HVXESpringUpgrade::kClass,
    &HVXESubmodelBCUpgrade::kClass,
    &HVXESurfaceHeatFluxUpgrade::kClass,
    &HVXESurfaceToSurfaceContactUpgrage::kClass,
    &HVXETempHistoryUpgrade::kClass,
    &HVXETemperatureBCUpgrade::kClass,
    &HVXETiedContactUpgrage::kClass,
    &HVXEVelocityBCUpgrade::kClass,
};

const HVXDocumentUpgrade kDocumentUpgrades[] = {
    {kRemoveConsisChkAttr,
     "Removes the rule names of the abandoned consistency check from the features of this product.",
     &HVXGenericUpgrades::Upgtade},
    {kUpgDocumentForCCPRemoval,
     "Replaces contact connection properties by contact pairs in every case of this product.",
     &HVXGenericUpgrades::Upgtade},
};

const HVXUpgradeOrder kOrders[] = {
    {kUpgradeToContactConnectionEnhancementLT, kUpgContactStdWithInterference,
     "A contact that is converted later would never get the fit that holds its clearance."},
    {kUpgContactStdWithInterference, kUpgMapCCPClearanceToInterference,
     "Without a fit a contact has no place for the clearance of its connection property."},
    {kUpgMapCCPClearanceToInterference, kUpgCCPToGACOrConstraintAsSupp,
     "A contact that does not rest on its connection property any more cannot read its clearance there."},
    {kUpgCCPToGACOrConstraintAsSupp, kUpgDocumentForCCPRemoval,
     "Contacts that still rest on a connection property lose their support with it, and get a second pair."},
};

const HVXUpgradeDeclarations declarations("HVXUpgradeComponents", kClasses);

}  // namespace

const VLMLibrary& HVXThisLibrary() {
  return declarations.Library();
}

const HVXUpgradeLibrary* HVXGetUpgradeLibrary() {
  static const HVXUpgradeLibrary library = {
      .name = "HVXUpgradeComponents",
      .version = HVX_LIBRARY_VERSION,
      .identifiers = kHVXUpgradeIdentifiers,
      .classes = kClasses,
      .documentUpgrades = kDocumentUpgrades,
      .orders = kOrders,
      .observer = &HVXDispatchObserver,
  };
  return &library;
}
