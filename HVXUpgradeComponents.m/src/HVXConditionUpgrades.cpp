#include "HVXConditionUpgrades.h"

#include "base/VLMIModelEvents.h"

namespace {

constexpr int kDrawAgain = 1;

}  // namespace

void HVXSendModificationNotice(const VLMBaseUnknown_var& feature) {
  const VLMIModelEvents_var spEvents(feature);
  if (spEvents == NULL_var) return;
  const VLMModify notice(feature, VLMBaseUnknown::kId, kDrawAgain);
  static_cast<void>(spEvents->Dispatch(notice));
}
