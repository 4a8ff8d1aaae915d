#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades initial velocities.
class HVXEInitialVelocityUpgrade final : public HVXUpgradeOf<HVXEInitialVelocityUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT UpgradeAndTrim();
  HRESULT TrimSonsList();

  static const HVXUpgradeBinding kBindings[];
};
