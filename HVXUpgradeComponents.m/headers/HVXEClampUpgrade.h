#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades clamps.
class HVXEClampUpgrade final : public HVXUpgradeOf<HVXEClampUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
