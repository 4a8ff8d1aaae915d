#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades rotational body forces.
class HVXERotBodyForceUpgrade final : public HVXUpgradeOf<HVXERotBodyForceUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateAxis();
  HRESULT StoreAxisWithPart();
  HRESULT MigrateRotation();
  HRESULT TransferRotation();

  static const HVXUpgradeBinding kBindings[];
};
