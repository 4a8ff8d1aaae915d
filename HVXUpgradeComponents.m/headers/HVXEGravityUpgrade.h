#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades gravity loads.
class HVXEGravityUpgrade final : public HVXUpgradeOf<HVXEGravityUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
