#include "HVXEGravityUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXSupportUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXIGravity.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXGravity"};

const VLMString kComponents[] = {"component1_param", "component2_param", "component3_param"};

}  // namespace

const HVXUpgradeBinding HVXEGravityUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on a solid to the part's main body.",
     Shared<&HVXUpgradeBodySupport>, HVXOnFailure::kStop},
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeGravityBasicComponents, "Moves the three components from their parameters to the gravity.",
     Own<&HVXEGravityUpgrade::MigrateComponents>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEGravityUpgrade::kClass = {
    .name = "HVXEGravityUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEGravityUpgrade::MigrateComponents() {
  const HRESULT migrated = HVXUpgradeThenTransfer(Feature(), [this] { return TransferComponents(); });
  HVXSendModificationNotice(Feature());  // after a failure too, on purpose: it may have changed something
  return migrated;
}

HRESULT HVXEGravityUpgrade::TransferComponents() {
  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  if (spAttrAccess == NULL_var) return E_NOINTERFACE;
  const HVXIGravity_var spGravity(Feature());
  if (spGravity == NULL_var) return E_FAIL;

  std::array<double, 3> components{};
  for (std::size_t i = 0; i < components.size(); ++i) {
    const HRESULT read = HVXGetRealParmValue(kComponents[i], components[i], spAttrAccess);
    if (Failed(read)) return read;
  }
  if (const HRESULT set = spGravity->SetComponents(components); Failed(set)) return set;
  // One parameter that cannot be removed keeps neither the others nor the gravity from being current.
  for (const VLMString& component : kComponents) static_cast<void>(HVXRemoveParameter(component, Feature()));
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEGravityUpgrade)
