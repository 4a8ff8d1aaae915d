#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades gravity loads.
class HVXEGravityUpgrade final : public HVXUpgradeOf<HVXEGravityUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateComponents();
  HRESULT TransferComponents();

  static const HVXUpgradeBinding kBindings[];
};
