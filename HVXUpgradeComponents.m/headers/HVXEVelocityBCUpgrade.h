#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades velocity boundary conditions.
class HVXEVelocityBCUpgrade final : public HVXUpgradeOf<HVXEVelocityBCUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
