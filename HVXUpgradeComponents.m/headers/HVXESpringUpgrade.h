#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades springs and dampers.
class HVXESpringUpgrade final : public HVXUpgradeOf<HVXESpringUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
