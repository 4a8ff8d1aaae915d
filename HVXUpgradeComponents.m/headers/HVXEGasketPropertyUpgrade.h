#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades gasket properties.
class HVXEGasketPropertyUpgrade final : public HVXUpgradeOf<HVXEGasketPropertyUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
