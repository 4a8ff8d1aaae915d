#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades initial temperatures.
class HVXEInitialTempUpgrade final : public HVXUpgradeOf<HVXEInitialTempUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
