#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades velocity boundary conditions.
class HVXEVelocityBCUpgrade final : public HVXUpgradeOf<HVXEVelocityBCUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT RebuildComponents();

  static const HVXUpgradeBinding kBindings[];
};
