#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades rotational body forces.
class HVXERotBodyForceUpgrade final : public HVXUpgradeOf<HVXERotBodyForceUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
