#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades temperature boundary conditions.
class HVXETemperatureBCUpgrade final : public HVXUpgradeOf<HVXETemperatureBCUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateValue();

  static const HVXUpgradeBinding kBindings[];
};
