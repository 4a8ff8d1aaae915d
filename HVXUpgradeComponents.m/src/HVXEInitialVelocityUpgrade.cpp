#include "HVXEInitialVelocityUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXSonsList.h"
#include "HVXUpgradeIdentifiers.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXInitialVelocityLT"};

constexpr int kFirstRedundantSon = 4;

}  // namespace

const HVXUpgradeBinding HVXEInitialVelocityUpgrade::kBindings[] = {
    {kUpgradeInitialVelocityBasicComponents,
     "Rebuilds the basic components and removes those behind the third son.",
     Own<&HVXEInitialVelocityUpgrade::UpgradeAndTrim>, HVXOnFailure::kFirst},
};

constinit const HVXUpgradeClass HVXEInitialVelocityUpgrade::kClass = {
    .name = "HVXEInitialVelocityUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEInitialVelocityUpgrade::UpgradeAndTrim() {
  return HVXUpgradeThenTransfer(Feature(), [this] { return TrimSonsList(); });
}

HRESULT HVXEInitialVelocityUpgrade::TrimSonsList() {
  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  const VLMISpecObject_var spSpec(Feature());
  if (spAttrAccess == NULL_var || spSpec == NULL_var) return E_FAIL;
  const HVXSonsList sons(spAttrAccess, spSpec);
  if (sons.IsMissing()) return E_FAIL;

  for (int position = sons.Size(); position >= kFirstRedundantSon; --position) {
    const VLMISpecObject_var spSon = sons.Son(position);
    const VLMISamBasicComponent_var spComponent(spSon);
    if (!(spComponent == NULL_var)) sons.Remove(spSon);
  }
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEInitialVelocityUpgrade)
