#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades acceleration boundary conditions.
class HVXEAcclnBCUpgrade final : public HVXUpgradeOf<HVXEAcclnBCUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateDegreesOfFreedom();
  HRESULT TransferDegreesOfFreedom();

  static const HVXUpgradeBinding kBindings[];
};
