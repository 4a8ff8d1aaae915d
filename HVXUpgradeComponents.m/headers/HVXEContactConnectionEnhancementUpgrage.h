#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades contacts (contact connection enhancements), standard and explicit.
class HVXEContactConnectionEnhancementUpgrage final
    : public HVXUpgradeOf<HVXEContactConnectionEnhancementUpgrage> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];

  HRESULT AddContactControl();
  HRESULT CompleteWithInterferenceFit();
  HRESULT MapClearanceToInterference();
  HRESULT MoveSupportFromProperty();
  HRESULT UpgradeContactControl();
  HRESULT ResetOverclosureMode();
  HRESULT AddSurfaceSmoothing();
};
