#include "HVXEDisplacementBCUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXSonsList.h"
#include "HVXUpgradeIdentifiers.h"
#include "base/VLMFatalError.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXDisplacementBC"};

constexpr const char* kSource = "HVXUpgradeComponents.m/src/HVXEDisplacementBCUpgrade";

const VLMUnicodeString kRedundantTranslation("DisplBCTrans");

constexpr int kSonsOfCurrentModel = 2;

}  // namespace

const HVXUpgradeBinding HVXEDisplacementBCUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeDispBCBasicComponents,
     "Removes redundant translation components and rebuilds the basic components.",
     Own<&HVXEDisplacementBCUpgrade::TrimAndUpgrade>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEDisplacementBCUpgrade::kClass = {
    .name = "HVXEDisplacementBCUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEDisplacementBCUpgrade::TrimAndUpgrade() {
  const HRESULT upgraded = HVXTrimThenUpgrade(Feature(), [this] { return TrimSonsList(); });
  HVXSendModificationNotice(Feature());  // after a failure too, on purpose: sons may be gone
  return upgraded;
}

HRESULT HVXEDisplacementBCUpgrade::TrimSonsList() {
  const VLMISpecAttrAccess_var spAttrAccessOnBC(Feature());
  if (spAttrAccessOnBC == NULL_var) VLMFatalError("AssertionFailed:NULL_var != spAttrAccessOnBC", kSource);
  const VLMISpecObject_var spSpecOnSelf(Feature());
  if (spSpecOnSelf == NULL_var) VLMFatalError("AssertionFailed:NULL_var != spSpecOnSelf", kSource);
  const HVXSonsList sons(spAttrAccessOnBC, spSpecOnSelf);
  if (sons.IsMissing()) return E_FAIL;

  for (int position = sons.Size(); position >= 2; --position) {
    const VLMISpecObject_var spSon = sons.Son(position);
    if (HVXIsBasicComponentCalled(spSon, kRedundantTranslation)) sons.Remove(spSon);
  }
  return sons.Size() == kSonsOfCurrentModel ? S_OK : E_FAIL;
}

HVX_EXPORT_CREATE_TIE(HVXEDisplacementBCUpgrade)
