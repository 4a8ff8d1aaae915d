#include "HVXEConcForceUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXSonsList.h"
#include "HVXUpgradeIdentifiers.h"
#include "base/VLMFatalError.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXConcentratedForce"};

constexpr const char* kSource = "HVXUpgradeComponents.m/src/HVXEConcForceUpgrade";

const VLMUnicodeString kRedundantForce("ConcForce");
const VLMUnicodeString kRedundantMoment("ConcForceMoment");

constexpr int kSonsOfCurrentModel = 2;

}  // namespace

const HVXUpgradeBinding HVXEConcForceUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeConcForceBasicComponents,
     "Removes redundant force and moment components and rebuilds the basic components.",
     Own<&HVXEConcForceUpgrade::TrimAndUpgrade>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEConcForceUpgrade::kClass = {
    .name = "HVXEConcForceUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEConcForceUpgrade::TrimAndUpgrade() {
  const HRESULT upgraded = HVXTrimThenUpgrade(Feature(), [this] { return TrimSonsList(); });
  HVXSendModificationNotice(Feature());  // after a failure too, on purpose: sons may be gone
  return upgraded;
}

HRESULT HVXEConcForceUpgrade::TrimSonsList() {
  const VLMISpecAttrAccess_var spAttrAccessOnConcForce(Feature());
  if (spAttrAccessOnConcForce == NULL_var)
    VLMFatalError("AssertionFailed:NULL_var != spAttrAccessOnConcForce", kSource);
  const VLMISpecObject_var spSpecOnSelf(Feature());
  if (spSpecOnSelf == NULL_var) VLMFatalError("AssertionFailed:NULL_var != spSpecOnSelf", kSource);
  const HVXSonsList sons(spAttrAccessOnConcForce, spSpecOnSelf);
  if (sons.IsMissing()) return E_FAIL;

  for (int position = sons.Size(); position >= 5; --position) {
    const VLMISpecObject_var spSon = sons.Son(position);
    if (HVXIsBasicComponentCalled(spSon, kRedundantForce) ||
        HVXIsBasicComponentCalled(spSon, kRedundantMoment))
      sons.Remove(spSon);
  }

  // Relies on the layout of old documents, on purpose: redundant forces stand directly behind the first son,
  // so only position 2 is looked at. On any other layout this has no end; who runs upgrades must be able to
  // stop one. The count is signed: a list of fewer than two sons is left at once.
  const int redundant = sons.Size() - kSonsOfCurrentModel;
  for (int removed = 0; removed < redundant;) {
    const VLMISpecObject_var spSon = sons.Son(2);
    if (!HVXIsBasicComponentCalled(spSon, kRedundantForce)) continue;
    sons.Remove(spSon);
    ++removed;
  }
  return sons.Size() == kSonsOfCurrentModel ? S_OK : E_FAIL;
}

HVX_EXPORT_CREATE_TIE(HVXEConcForceUpgrade)
