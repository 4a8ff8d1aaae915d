#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades global element assignments.
class HVXEGlobalElementUpgrade final : public HVXUpgradeOf<HVXEGlobalElementUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
