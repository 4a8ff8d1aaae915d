#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades initial temperatures.
class HVXEInitialTempUpgrade final : public HVXUpgradeOf<HVXEInitialTempUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateValue();

  static const HVXUpgradeBinding kBindings[];
};
