#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades pretension properties.
class HVXEPretensionPropUpgrade final : public HVXUpgradeOf<HVXEPretensionPropUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
