#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades temperature histories.
class HVXETempHistoryUpgrade final : public HVXUpgradeOf<HVXETempHistoryUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateValue();
  HRESULT SetEndIncrementToDefault();

  static const HVXUpgradeBinding kBindings[];
};
