#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades acceleration boundary conditions.
class HVXEAcclnBCUpgrade final : public HVXUpgradeOf<HVXEAcclnBCUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
