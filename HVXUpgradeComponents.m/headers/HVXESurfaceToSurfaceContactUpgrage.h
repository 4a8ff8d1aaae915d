#pragma once

#include "HVXUpgradeExtension.h"
#include "analysis/VLMISamAnalysisCase.h"
#include "analysis/VLMISamAnalysisSet.h"
#include "modeler/VLMISpecObject.h"

/// Upgrades surface-to-surface contacts.
class HVXESurfaceToSurfaceContactUpgrage final : public HVXUpgradeOf<HVXESurfaceToSurfaceContactUpgrage> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];

  HRESULT ConvertToContactPair();

  // The steps of the conversion, in its order.
  void RenameToContactPair();
  HRESULT ChooseInteractionSet(const VLMISpecObject_var& spCase, VLMISamAnalysisSet_var& spSet);
  [[nodiscard]] bool HasClearance();
  VLMUnicodeString ReadName();
  HRESULT CopySettings();
  HRESULT RepointOutputRequests();
  HRESULT RepointOutputRequestsOfSet(const VLMUnicodeString& setType, const VLMBaseUnknown_var& spStep);
  HRESULT RemoveToleranceParameter();
  HRESULT Propagate();
};
