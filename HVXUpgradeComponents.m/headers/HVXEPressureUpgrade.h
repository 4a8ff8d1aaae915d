#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades pressures.
class HVXEPressureUpgrade final : public HVXUpgradeOf<HVXEPressureUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateValue();

  static const HVXUpgradeBinding kBindings[];
};
