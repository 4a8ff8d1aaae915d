#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades displacement boundary conditions.
class HVXEDisplacementBCUpgrade final : public HVXUpgradeOf<HVXEDisplacementBCUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT TrimAndUpgrade();
  HRESULT TrimSonsList();

  static const HVXUpgradeBinding kBindings[];
};
